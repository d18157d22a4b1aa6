#include "tests/extended/extended_fixture.h"

namespace pmddb832::tests::extended {
namespace {

constexpr std::size_t kLine = 16000;  // bytes of a wide line; a block holds four

Bytes FourLines(std::uint8_t value) {
  return Fill(4 * kLine, value);
}

// An open scanner in the middle of a scan of ten wide lines, of which the first four, one block,
// were delivered.
struct HalfwayScanner : ExtendedScanner {
  explicit HalfwayScanner(std::uint32_t fullBlocks = 2) {
    REQUIRE(Open(Identity(), Status(0, 0x80)) == 1);
    settings.docFeedOption = 2;
    ScanHalf(fullBlocks);
  }

  void ScanHalf(std::uint32_t fullBlocks) {
    const Bytes parameters = AskForWideLines(10);
    StartScan(With(parameters, 26, {settings.scanSource}), Header(64000, fullBlocks, 32000), 1);
    SendBlock(FourLines(1));
    REQUIRE(Acquire(4 * kLine).record.lines == 4);
  }

  // A block that is answered with CAN, which the scanner acknowledges.
  void CancelBlock() { device.Reply(FourLines(2) + Bytes{0x00}).Expect({0x18}).Reply({0x06}); }
};

TEST_CASE_FIXTURE(HalfwayScanner, "an abort reads the next block and cancels it") {
  device.Reply(FourLines(2) + Bytes{0x00}).Expect({0x18}).Reply({0x06});
  PMAbortScan();
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(HalfwayScanner, "a second abort sends nothing") {
  CancelBlock();
  PMAbortScan();
  PMAbortScan();
  CHECK(PMGetScanError() == 0);
}

TEST_CASE("an abort ejects the page of a selected feeder, and of nothing else") {
  struct Row {
    std::uint8_t scanSource;
    std::uint32_t docFeedOption;
    bool ejects;
  };
  for (const Row& row : {Row{1, 0, true}, Row{0, 0, false}, Row{1, 1, false}, Row{1, 2, false}}) {
    CAPTURE(row.scanSource);
    CAPTURE(row.docFeedOption);
    HalfwayScanner scanner;
    scanner.settings.scanSource = row.scanSource;
    scanner.settings.docFeedOption = row.docFeedOption;
    scanner.CancelBlock();
    if (row.ejects) scanner.ExpectEject();
    PMAbortScan();
    CHECK(PMGetScanError() == 0);
  }
}

TEST_CASE_FIXTURE(HalfwayScanner, "the feeder's flags and keepPaper do not keep an aborted page") {
  Set("scanSource=1 docFeedOption=0 mainStatusBit5=1");
  settings.keepPaper = settings.feederStatusExtra = 1;
  CancelBlock();
  ExpectEject();
  PMAbortScan();
}

TEST_CASE_FIXTURE(HalfwayScanner, "an eject that fails does not fail the abort") {
  Set("scanSource=1 docFeedOption=0");
  CancelBlock();
  device.Expect({0x0C}).Reply({kNak});
  CHECK(AbortSet() == 1);
  CHECK(PMGetScanError() == 0);
}

TEST_CASE("an abort before the last block reads it and has nothing to cancel") {
  HalfwayScanner scanner(1);
  scanner.SendLastBlock(Fill(2 * kLine, 3));
  PMAbortScan();
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(HalfwayScanner, "an abort fails with 9 at each transfer that fails") {
  device.FailNextRead();
  PMAbortScan();
  CHECK(PMGetScanError() == 9);
  device.Reply(FourLines(2) + Bytes{0x00}).FailNextWrite();
  PMAbortScan();
  CHECK(PMGetScanError() == 9);
  device.Reply(FourLines(2) + Bytes{0x00}).Expect({0x18}).FailNextRead();
  PMAbortScan();
  CHECK(PMGetScanError() == 9);
  device.Reply(FourLines(2) + Bytes{0x00}).Expect({0x18}).Reply({kNak});
  CHECK(AbortSet() == 0);
  CHECK(PMGetScanError() == 9);
}

TEST_CASE_FIXTURE(HalfwayScanner, "a cancel that is not acknowledged ejects nothing") {
  Set("scanSource=1 docFeedOption=0");
  device.Reply(FourLines(2) + Bytes{0x00}).Expect({0x18}).Reply({kNak});
  PMAbortScan();
}

TEST_CASE_FIXTURE(HalfwayScanner,
                  "a block with an error ends the abort with the option's condition") {
  device.Reply(FourLines(2) + Bytes{0x80});
  AnswerStatus(Status(0x40));
  PMAbortScan();
  CHECK(PMGetScanError() == 31);
}

TEST_CASE_FIXTURE(HalfwayScanner,
                  "an acquisition behind an abort starts at line 0 and reads nothing") {
  CancelBlock();
  PMAbortScan();
  progress.clear();
  const Band band = Acquire(10 * kLine);
  CHECK(band.record.status == kGoOn);
  CHECK(band.record.done == 1);
  CHECK(band.record.lines == 10);
  CHECK(band.Rows(kLine) == "02 02 02 02 02 02 02 02 02 02");
  CHECK(progress == std::vector<std::uint32_t>{0, 50, 100});
}

TEST_CASE_FIXTURE(HalfwayScanner, "an aborted page is not ejected at its end again") {
  Set("scanSource=1 docFeedOption=0");
  CancelBlock();
  ExpectEject();
  PMAbortScan();
  CHECK(Acquire(10 * kLine).record.status == kGoOn);
}

TEST_CASE_FIXTURE(HalfwayScanner, "a new set-up behind an abort scans as ever") {
  CancelBlock();
  PMAbortScan();
  ScanHalf(2);
  SendBlock(FourLines(5));
  CHECK(Acquire(4 * kLine).Rows(kLine) == "05 05 05 05");
}

TEST_CASE_FIXTURE(HalfwayScanner, "an abort during progress cancels the block that is due") {
  CancelBlock();
  duringProgress = PMAbortScan;
  const Band band = Acquire(6 * kLine);
  CHECK(band.record.status == kGoOn);
  CHECK(band.record.done == 0);
  CHECK(band.Rows(kLine) == "02 02 02 02 02 02");
}

TEST_CASE_FIXTURE(OpenExtended, "an abort behind the last line of a scan sends nothing") {
  ScanPage();
  PMAbortScan();
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(OpenExtended, "an abort without a transfer sends nothing and is 9") {
  PMAbortScan();
  CHECK(PMGetScanError() == 9);
  InitAcquire();
  PMAbortScan();
  CHECK(PMGetScanError() == 9);
}

TEST_CASE_FIXTURE(OpenExtended, "an abort between set-up and transfer cancels the first block") {
  const Bytes parameters = AskForWideLines(4);
  InitAcquire();
  PMAbortScan();
  AcceptParameters(parameters);
  AnswerStart(Header(64000, 9, 0));
  device.Reply(FourLines(2) + Bytes{0x00}).Expect({0x18}).Reply({0x06});
  CHECK(Acquire(4 * kLine).record.done == 1);
}

TEST_CASE_FIXTURE(OpenExtended, "an abort while warming up sends nothing and is 9") {
  InitAcquire();
  AcceptParameters();
  AnswerStatus(Status(0x02));
  Acquire(64);
  PMAbortScan();
  CHECK(PMGetScanError() == 9);
}

}  // namespace
}  // namespace pmddb832::tests::extended
