#include "tests/extended/extended_fixture.h"

namespace pmddb832::tests::extended {
namespace {

// An open scanner whose default scan was set up and whose parameters were accepted.
struct ReadyScanner : ExtendedScanner {
  ReadyScanner() {
    REQUIRE(Open() == 1);
    InitAcquire();
    AcceptParameters();
  }

  // FS G and what it is answered with.
  void AnswerG(const Bytes& header) { device.Expect({0x1C, 0x47}).Reply(header); }

  // The band of the whole image must fail with that code, before a line was delivered.
  void CheckFailure(std::uint32_t code) {
    const Band band = Acquire(64);
    CHECK(band.record.status == kFailed);
    CHECK(PMGetScanError() == code);
    CHECK(band.Rows(16) == "A5 A5 A5 A5");
  }
};

Bytes BusyHeader() {
  return With(Header(0, 0, 64), 1, {0x80});
}

TEST_CASE_FIXTURE(ReadyScanner,
                  "a transfer is status, FS G, header, then the block and its status") {
  device.Expect({0x1C, 0x46}).Reply(Status());
  device.Expect({0x1C, 0x47}).Reply(FromHex("02 00 00 00 00 00 00 00 00 00 40 00 00 00"));
  device.Reply(Ramp(0, 64) + Bytes{0x00});
  const Band band = Acquire(64);
  CHECK(band.image == Ramp(48, 16) + Ramp(32, 16) + Ramp(16, 16) + Ramp(0, 16));
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(ReadyScanner,
                  "a warming-up scanner fails with 43, and the next call tries again") {
  AnswerStatus(Status(0x02));
  CheckFailure(43);
  AcceptParameters();
  AnswerStart(Header(0, 0, 64));
  SendLastBlock(Fill(64, 1));
  CHECK(Acquire(64).record.status == kGoOn);
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(ReadyScanner, "a fatal error before the start is asked for and reported as 22") {
  AnswerStatus(Status(0x82));
  AnswerStatus(Status(0x82));
  CheckFailure(22);
}

TEST_CASE_FIXTURE(ReadyScanner, "fatal and not ready before the start is reported as not ready") {
  AnswerStatus(Status(0xC0));
  AnswerStatus(Status(0xC0));
  CheckFailure(31);
}

TEST_CASE_FIXTURE(ReadyScanner, "not ready alone does not keep the scan from starting") {
  AnswerStatus(Status(0x7D));
  AnswerG(Header(0, 0, 64));
  SendLastBlock(Fill(64, 1));
  CHECK(Acquire(64).record.done == 1);
}

TEST_CASE_FIXTURE(ReadyScanner, "after an unreadable status the option's condition is reported") {
  device.Expect({0x1C, 0x46}).FailNextRead();
  AnswerStatus(Status(0x40));
  CheckFailure(31);
}

TEST_CASE_FIXTURE(ReadyScanner, "a status that stays unreadable is reported as 7") {
  device.FailNextWrite().FailNextWrite();
  CheckFailure(7);
}

TEST_CASE(
    "a start that fails is explained by the status of the fitted option, 22 when it knows none") {
  struct Row {
    std::uint32_t docFeedOption;
    Bytes status;
    std::uint32_t code;
  };
  for (const Row& row :
       {Row{2, Status(), 22}, Row{2, Status(0, 0x42, 0x42), 22}, Row{2, Status(0x40), 31},
        Row{2, Status(0x80), 22}, Row{0, Status(0, 0x48), 13}, Row{0, Status(0, 0x44), 14},
        Row{0, Status(0, 0x42), 15}, Row{1, Status(0, 0, 0x42), 15}}) {
    CAPTURE(row.docFeedOption);
    CAPTURE(row.code);
    ReadyScanner scanner;
    scanner.settings.docFeedOption = row.docFeedOption;
    scanner.AnswerStart(With(Header(0, 0, 64), 0, {kNak}));
    scanner.AnswerStatus(row.status);
    scanner.CheckFailure(row.code);
  }
}

TEST_CASE("the transfer starts only with a header whose first byte is STX") {
  for (const int first : {0x00, 0x01, 0x03, 0x06, 0x15, 0x82, 0xFF}) {
    CAPTURE(first);
    ReadyScanner scanner;
    scanner.AnswerStart(With(Header(0, 0, 64), 0, {static_cast<std::uint8_t>(first)}));
    scanner.AnswerStatus();
    scanner.CheckFailure(22);
  }
}

TEST_CASE_FIXTURE(ReadyScanner,
                  "FS G that is not carried, or a header not delivered, fails the start") {
  AnswerStatus();
  device.FailNextWrite();
  AnswerStatus();
  CheckFailure(22);
  AcceptParameters();
  AnswerStatus();
  device.Expect({0x1C, 0x47}).FailNextRead();
  AnswerStatus();
  CheckFailure(22);
}

TEST_CASE_FIXTURE(ReadyScanner, "of the header's status only bit 7 counts") {
  AnswerStart(With(Header(0, 0, 64), 1, {0x7F}));
  SendLastBlock(Fill(64, 1));
  CHECK(Acquire(64).record.done == 1);
}

TEST_CASE_FIXTURE(ReadyScanner, "a busy header is asked for once more") {
  AnswerStart(BusyHeader());
  AnswerStart(Header(0, 0, 64));
  SendLastBlock(Fill(64, 1));
  CHECK(Acquire(64).record.done == 1);
}

TEST_CASE_FIXTURE(ReadyScanner, "a second busy header ends the start") {
  AnswerStart(BusyHeader());
  AnswerStart(BusyHeader());
  AnswerStatus();
  CheckFailure(22);
}

TEST_CASE_FIXTURE(ReadyScanner, "warming up after a busy header is 43, without another status") {
  AnswerStart(BusyHeader());
  AnswerStatus(Status(0x02));
  CheckFailure(43);
}

TEST_CASE_FIXTURE(ReadyScanner, "a second header without STX ends the start") {
  AnswerStart(BusyHeader());
  AnswerStart(With(Header(0, 0, 64), 0, {0x06}));
  AnswerStatus(Status(0x40));
  CheckFailure(31);
}

TEST_CASE_FIXTURE(ReadyScanner, "a second FS G or header that fails ends the start") {
  AnswerStart(BusyHeader());
  AnswerStatus();
  device.FailNextWrite();
  AnswerStatus();
  CheckFailure(22);
  AcceptParameters();
  AnswerStart(BusyHeader());
  AnswerStatus();
  device.Expect({0x1C, 0x47}).FailNextRead();
  AnswerStatus();
  CheckFailure(22);
}

TEST_CASE_FIXTURE(ReadyScanner, "the progress window is repainted before each FS G") {
  settings.progressWindow = &device;
  AnswerStart(BusyHeader());
  AnswerStart(Header(0, 0, 64));
  SendLastBlock(Fill(64, 1));
  Acquire(64);
  CHECK(system.repaintedWindows == std::vector<void*>{&device, &device});
}

TEST_CASE_FIXTURE(ReadyScanner,
                  "no window is repainted while warming up, and none when there is none") {
  settings.progressWindow = &device;
  AnswerStatus(Status(0x02));
  Acquire(64);
  settings.progressWindow = nullptr;
  AcceptParameters();
  AnswerStart(Header(0, 0, 64));
  SendLastBlock(Fill(64, 1));
  Acquire(64);
  CHECK(system.repaintedWindows.empty());
}

TEST_CASE("parameters that are not accepted fail with 22") {
  const std::string block = "> 1C 57 < 06 >" + Hex(ParameterBlock());
  for (const std::string& conversation :
       {std::string(">!"), std::string("> 1C 57 <!"), std::string("> 1C 57 < 15"),
        std::string("> 1C 57 < 06 >!"), block + "<!", block + "< 15"}) {
    CAPTURE(conversation);
    OpenExtended scanner;
    scanner.InitAcquire();
    scanner.device.Converse(conversation);
    scanner.CheckAcquireFails(64, 22);
  }
}

TEST_CASE("tables that are not accepted fail with 22, and no parameters follow") {
  for (const int failing : {0, 1, 2, 3}) {
    CAPTURE(failing);
    OpenExtended scanner;
    scanner.settings.customGamma = scanner.settings.colorCorrection = 1;
    scanner.InitAcquire();
    const char* const selectors = "RGB";
    for (int i = 0; i < failing; ++i) {
      scanner.device.ExpectBlock(0x1B, 'z', Text({selectors + i, 1}) + Fill(256, 0));
    }
    scanner.device.Expect({0x1B, failing == 3 ? std::uint8_t{0x6D} : std::uint8_t{0x7A}});
    scanner.device.Reply({kNak});
    scanner.CheckAcquireFails(64, 22);
  }
}

TEST_CASE_FIXTURE(OpenExtended,
                  "the one table of a single-channel scan is refused in the same way") {
  settings.customGamma = settings.monoScan = 1;
  InitAcquire();
  device.Expect({0x1B, 0x7A}).Reply({0x06}).Expect(Text("M") + Fill(256, 0)).Reply({kNak});
  CheckAcquireFails(64, 22);
}

}  // namespace
}  // namespace pmddb832::tests::extended
