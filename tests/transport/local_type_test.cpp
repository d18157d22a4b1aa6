#include "transport/local_type.h"

#include <doctest/doctest.h>

#include "tests/interface/module_fixture.h"

namespace pmddb832::tests {
namespace {

struct Wired : ModuleFixture {
  Wired() { MakeChannel(); }
  LocalType wire;
};

}  // namespace

TEST_CASE_FIXTURE(Wired, "an ACK is one byte and waits for no answer") {
  device.Expect({0x06});
  CHECK(wire.SendAck(CallNow(), 0x06) == 1);
}

TEST_CASE_FIXTURE(Wired, "any control byte but CAN waits for no answer") {
  for (int code = 0; code < 256; ++code) {
    if (code == 0x18) continue;
    device.Expect({static_cast<std::uint8_t>(code)});
    CHECK(wire.SendAck(CallNow(), static_cast<std::uint8_t>(code)) == 1);
  }
}

TEST_CASE_FIXTURE(Wired, "a control byte that cannot be sent fails") {
  device.FailNextWrite().FailNextWrite();
  CHECK(wire.SendAck(CallNow(), 0x06) == 0);
  CHECK(wire.SendAck(CallNow(), 0x18) == 0);
}

TEST_CASE_FIXTURE(Wired, "a CAN counts when the scanner acknowledges it") {
  device.Expect({0x18}).Reply({0x06});
  CHECK(wire.SendAck(CallNow(), 0x18) == 1);
  device.Expect({0x18}).Reply({0x15});
  CHECK(wire.SendAck(CallNow(), 0x18) == 0);
  device.Expect({0x18}).FailNextRead();
  CHECK(wire.SendAck(CallNow(), 0x18) == 0);
}

TEST_CASE_FIXTURE(Wired, "0x06 is the only byte that acknowledges") {
  for (int reply = 0; reply < 256; ++reply) {
    CAPTURE(reply);
    device.Reply({static_cast<std::uint8_t>(reply)});
    CHECK(wire.CheckAck(CallNow()) == (reply == 0x06 ? 1 : 0));
  }
}

TEST_CASE_FIXTURE(Wired, "an acknowledge that cannot be read, or is empty, does not count") {
  device.FailNextRead().ShortReply(1, {});
  CHECK(wire.CheckAck(CallNow()) == 0);
  CHECK(wire.CheckAck(CallNow()) == 0);
}

TEST_CASE_FIXTURE(Wired, "a command is its prefix and its letter in one transfer") {
  device.Expect({0x1B, 0x47}).Expect({0x1C, 0x47}).Expect({0x1B, 0x00}).Expect({0x1C, 0xFF});
  CHECK(wire.SendEscCode(CallNow(), 'G') == 1);
  CHECK(wire.SendFSCode(CallNow(), 'G') == 1);
  CHECK(wire.SendEscCode(CallNow(), 0x00) == 1);
  CHECK(wire.SendFSCode(CallNow(), 0xFF) == 1);
}

TEST_CASE_FIXTURE(Wired, "a command that cannot be sent fails and reads nothing") {
  device.FailNextWrite().FailNextWrite();
  CHECK(wire.SendEscCode(CallNow(), 'I') == 0);
  CHECK(wire.SendFSCode(CallNow(), 'I') == 0);
}

TEST_CASE_FIXTURE(Wired, "blocks are moved whole, in one transfer") {
  device.Expect(Fill(64, 0xA5)).Reply(Fill(65280, 0x3C));
  Bytes received(65280);
  CHECK(wire.Write(CallNow(), Fill(64, 0xA5)) == 1);
  CHECK(wire.Read(CallNow(), received) == 1);
  CHECK(received == Fill(65280, 0x3C));
}

TEST_CASE_FIXTURE(Wired, "a failed transfer is 0, whatever the channel's code") {
  device.FailNextWrite().FailNextRead();
  Bytes bytes(3);
  CHECK(wire.Write(CallNow(), bytes) == 0);
  CHECK(wire.Read(CallNow(), bytes) == 0);
  settings.deviceInterface = nullptr;
  CHECK(wire.Write(CallNow(), bytes) == 0);
  CHECK(wire.Read(CallNow(), bytes) == 0);
}

TEST_CASE_FIXTURE(Wired, "in direct mode every status but 0 is a failure") {
  settings.useDeviceInterface = 0;
  static std::uint32_t status;
  currentChannel->readEntry = [](std::uint8_t*, std::uint32_t) { return status; };
  currentChannel->writeEntry = [](const std::uint8_t*, std::uint32_t) { return status; };
  Bytes bytes(1);
  for (const std::uint32_t answer : {0U, 1U, 3U, 0x80000000U}) {
    status = answer;
    CHECK(wire.Read(CallNow(), bytes) == (answer == 0 ? 1 : 0));
    CHECK(wire.Write(CallNow(), bytes) == (answer == 0 ? 1 : 0));
  }
}

TEST_CASE_FIXTURE(Wired, "feed and eject are one byte each, which the scanner acknowledges") {
  device.Expect({0x19}).Reply({0x06}).Expect({0x0C}).Reply({0x06});
  CHECK(wire.FeedPaper(CallNow()) == 1);
  CHECK(wire.EjectPage(CallNow()) == 1);
}

TEST_CASE_FIXTURE(Wired, "a feed or an eject without an acknowledge fails") {
  device.Expect({0x19}).Reply({0x15}).Expect({0x0C}).Reply({0x00});
  CHECK(wire.FeedPaper(CallNow()) == 0);
  CHECK(wire.EjectPage(CallNow()) == 0);
  device.Expect({0x19}).FailNextRead().Expect({0x0C}).FailNextRead();
  CHECK(wire.FeedPaper(CallNow()) == 0);
  CHECK(wire.EjectPage(CallNow()) == 0);
}

TEST_CASE_FIXTURE(Wired, "a feed or an eject that cannot be sent reads nothing") {
  device.FailNextWrite().FailNextWrite();
  CHECK(wire.FeedPaper(CallNow()) == 0);
  CHECK(wire.EjectPage(CallNow()) == 0);
}

TEST_CASE_FIXTURE(Wired, "the error query always answers 0") {
  device.FailNextWrite();
  CHECK(wire.SendEscCode(CallNow(), 'I') == 0);
  CHECK(wire.ErrorCode() == 0);
}

TEST_CASE_FIXTURE(ModuleFixture, "without a channel every transfer fails") {
  LocalType wire;
  Bytes bytes(2);
  CHECK(wire.Read(CallNow(), bytes) == 0);
  CHECK(wire.Write(CallNow(), bytes) == 0);
  CHECK(wire.SendAck(CallNow(), 0x06) == 0);
  CHECK(wire.CheckAck(CallNow()) == 0);
  CHECK(wire.FeedPaper(CallNow()) == 0);
}

}  // namespace pmddb832::tests
