#include "interface/command_level_probe.h"

#include <doctest/doctest.h>

#include <string>

#include "tests/interface/module_fixture.h"
#include "tests/interface/open_conversation.h"
#include "tests/safety/failing_allocation.h"

namespace pmddb832::tests {
namespace {

struct ProbeFixture : ModuleFixture {
  ProbeFixture() { MakeChannel(); }

  ScriptedDevice& ExpectQuestion() { return device.Expect({0x1B, 0x49}); }

  // Runs the exchange; "status letter digit" in hexadecimal, or "failed".
  std::string Level() {
    Checkcmd probe(0);
    if (probe.GetLevelInfo(CallNow()) == 0) return "failed";
    return Hex({probe.Level().status, probe.Level().letter, probe.Level().digit});
  }
};

}  // namespace

TEST_CASE_FIXTURE(ProbeFixture, "the level is the status byte and the first two data bytes") {
  ExpectQuestion().Reply({0x02, 0x5A, 0x05, 0x00}).Reply({0x42, 0x38, 0x52, 0x64, 0x00});
  CHECK(Level() == "5A 42 38");
}

TEST_CASE_FIXTURE(ProbeFixture, "a question that cannot be sent is not followed by a read") {
  device.FailNextWrite();
  CHECK(Level() == "failed");
}

TEST_CASE_FIXTURE(ProbeFixture, "a first byte other than STX is not followed by a second read") {
  for (const int first : {0x06, 0x15, 0x00, 0x03, 0xFF}) {
    ExpectQuestion().Reply({static_cast<std::uint8_t>(first), 0x02, 0x02, 0x00});
    CHECK(Level() == "failed");
  }
}

TEST_CASE_FIXTURE(ProbeFixture, "a header or data that cannot be read fail the probe") {
  ExpectQuestion().FailNextRead();
  CHECK(Level() == "failed");
  ExpectQuestion().Reply({0x02, 0x02, 0x02, 0x00}).FailNextRead();
  CHECK(Level() == "failed");
}

TEST_CASE_FIXTURE(ProbeFixture, "a header or data that came with a failing read do not count") {
  ExpectQuestion().FailNextRead({0x02, 0x02, 0x02, 0x00});
  CHECK(Level() == "failed");
  ExpectQuestion().Reply({0x02, 0x02, 0x02, 0x00}).FailNextRead(Text("B8"));
  CHECK(Level() == "failed");
}

TEST_CASE_FIXTURE(ProbeFixture, "no data: an empty read, and the header's bytes are the level") {
  ExpectQuestion().Reply({0x02, 0x7E, 0x00, 0x00}).Reply({});
  CHECK(Level() == "7E 02 7E");
}

TEST_CASE_FIXTURE(ProbeFixture, "one byte of data overwrites the first byte of the header only") {
  ExpectQuestion().Reply({0x02, 0x7E, 0x01, 0x00}).Reply({0x42});
  CHECK(Level() == "7E 42 7E");
}

TEST_CASE_FIXTURE(ProbeFixture, "data of 150 bytes are read at once") {
  ExpectQuestion().Reply({0x02, 0x02, 0x96, 0x00}).Reply(Text("B4") + Fill(148, 0xEE));
  CHECK(Level() == "02 42 34");
}

TEST_CASE_FIXTURE(ProbeFixture, "what does not fit the reply buffer is drained and dropped") {
  ExpectQuestion().Reply({0x02, 0x02, 0x97, 0x00}).Reply(Text("B4") + Fill(148, 0xEE)).Reply({'A'});
  CHECK(Level() == "02 42 34");
  ExpectQuestion().Reply({0x02, 0x02, 0x2D, 0x01});  // 301
  device.Reply(Text("B5") + Fill(148, 0xEE)).Reply(Fill(150, 0xEE)).Reply({0xEE});
  CHECK(Level() == "02 42 35");
}

TEST_CASE_FIXTURE(ProbeFixture, "the longest reply is drained in reads of 150 bytes") {
  ExpectQuestion().Reply({0x02, 0x00, 0xFF, 0x7F}).Reply(Text("B6") + Fill(148, 0));
  for (int i = 1; i < 32767 / 150; ++i) device.Reply(Fill(150, 0xEE));
  device.Reply(Fill(32767 % 150, 0xEE));
  CHECK(Level() == "00 42 36");
}

TEST_CASE_FIXTURE(ProbeFixture, "surplus that cannot be read fails the probe") {
  ExpectQuestion().Reply({0x02, 0x02, 0xFF, 0x00}).Reply(Text("B4") + Fill(148, 0)).FailNextRead();
  CHECK(Level() == "failed");
}

TEST_CASE_FIXTURE(ProbeFixture, "a negative length fails without a second read") {
  for (const int high : {0x80, 0x8F, 0xFF}) {
    ExpectQuestion().Reply({0x02, 0x02, 0xFF, static_cast<std::uint8_t>(high)});
    CHECK(Level() == "failed");
  }
  ExpectQuestion().Reply({0x02, 0x02, 0x00, 0x80});
  CHECK(Level() == "failed");
}

TEST_CASE_FIXTURE(ProbeFixture, "opening the probe opens the channel, closing it closes it once") {
  Checkcmd probe(0);
  CHECK(probe.Open(CallNow()) == 1);
  CHECK(currentChannel->opened == 1);
  probe.Close(CallNow());
  CHECK(currentChannel->opened == 0);
  currentChannel->Open();
  probe.Close(CallNow());
  CHECK(currentChannel->opened == 1);
}

TEST_CASE_FIXTURE(ProbeFixture, "destroying an open probe leaves the channel open") {
  { Checkcmd(0).Open(CallNow()); }
  CHECK(currentChannel->opened == 1);
}

TEST_CASE_FIXTURE(ProbeFixture, "a probe without a channel is not opened") {
  Call without{settings, nullptr};
  Checkcmd probe(0);
  CHECK(probe.Open(without) == 0);
  currentChannel->opened = 1;
  probe.Close(CallNow());
  CHECK(currentChannel->opened == 1);
}

TEST_CASE_FIXTURE(ProbeFixture, "the rest of the probe's interface sends nothing") {
  Checkcmd probe(0);
  AcquisitionSetup setup{};
  AcquisitionBand band{};
  std::uint8_t buffer[4] = {};
  CHECK(probe.EnableOption(CallNow(), 5) == 1);
  CHECK(probe.GetLastError() == 0);
  probe.AbortScan(CallNow());
  probe.InitAcquire(CallNow(), 2, nullptr, &setup);
  probe.AcquireImage(CallNow(), buffer, 4, &band);
  CHECK(setup.status == 0);
  CHECK(band.status == 0);
  CHECK(probe.GetOptionStatus(CallNow(), nullptr, 0) == 0);
  CHECK(probe.SetFocusPos(CallNow(), 1, 0x9C) == 0x9C);
  CHECK(probe.GetScanPaperSize(CallNow(), 0, nullptr, nullptr) == 0);
  CHECK(probe.InitWorkArea() == 1);
}

TEST_CASE_FIXTURE(ProbeFixture, "bit 0x02 of the status says whether extended commands are known") {
  struct Row {
    std::uint8_t status;
    std::uint32_t support;
  };
  for (const Row& row : {Row{0x02, 1}, Row{0xFD, 0}, Row{0xFF, 1}, Row{0x00, 0}}) {
    CAPTURE(row.status);
    ScriptProbe(device, row.status, "A5");
    CHECK(ExtCommandSupport(CallNow(), 0) == 0);
    CHECK(extendedSupport == row.support);
    CHECK(Hex({commandLevelString, commandLevelString + 3}) == "41 35 00");
    CHECK(currentChannel->opened == 0);
  }
}

TEST_CASE_FIXTURE(ProbeFixture, "a failed probe answers 0, keeps what was known and stays open") {
  ScriptProbe(device, kAnswersExtended, "B7");
  ExtCommandSupport(CallNow(), 0);
  ExpectQuestion().Reply({0x15, 0x00, 0x00, 0x00});
  CHECK(ExtCommandSupport(CallNow(), 0) == 0);
  CHECK(extendedSupport == 1);
  CHECK(std::string(commandLevelString) == "B7");
  CHECK(currentChannel->opened == 1);
}

TEST_CASE_FIXTURE(ProbeFixture, "a failed first probe leaves the flag at 0 and the level empty") {
  device.FailNextWrite();
  CHECK(ExtCommandSupport(CallNow(), 0) == 0);
  CHECK(extendedSupport == 0);
  CHECK(Hex({commandLevelString, commandLevelString + 3}) == "00 00 00");
}

TEST_CASE_FIXTURE(ProbeFixture, "without a channel the probe ends without a transfer") {
  Call without{settings, nullptr};
  CHECK(ExtCommandSupport(without, 0) == 0);
}

TEST_CASE_FIXTURE(ProbeFixture, "no memory for the probe's transport is code 8") {
  const AllocationLimit none(0);
  CHECK(ExtCommandSupport(CallNow(), 0) == 8);
  CHECK(currentChannel->opened == 0);
}

}  // namespace pmddb832::tests
