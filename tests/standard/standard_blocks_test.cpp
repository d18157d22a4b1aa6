#include "tests/standard/standard_fixture.h"

// Blocks of lines: headers, answers, the last block, abort.

namespace pmddb832::tests::standard {
namespace {

Bytes Rows(std::initializer_list<std::uint8_t> values, std::size_t rowBytes = 16) {
  Bytes rows;
  for (const std::uint8_t value : values) rows = rows + Fill(rowBytes, value);
  return rows;
}

// A feeder scanner with the feeder selected.
struct FeederScanner : StandardScanner {
  FeederScanner() : StandardScanner("B4", Status(0, 0x80)) { settings.scanSource = 1; }

  void StartScan(const Bytes& header) {
    InitAcquire(1);
    AcceptUpload("e 01, " + UploadOf("B4"));
    AnswerStatus();
    device.ExpectBlock(0x1B, 'd', {0xFF});
    AnswerStart(header);
  }
};

TEST_CASE_FIXTURE(OpenB4,
                  "standard: a block is acknowledged, and the next one has a header of six bytes") {
  StartScan(BlockHeader(0x00, 16, 3));
  device.Reply(Rows({1, 2, 3})).Expect({0x06});
  device.Reply({0x02, 0x20, 0x10, 0x00, 0x01, 0x00}).Reply(Rows({4}));
  CHECK(Acquire(64).image == Rows({1, 2, 3, 4}));
}

TEST_CASE_FIXTURE(
    OpenB3, "standard: in line mode each line has a header of four bytes, the first one too") {
  StartScan({0x02, 0x00, 0x63, 0x00, 0x63, 0x00}, 0);
  for (const std::uint8_t line : Bytes{1, 2, 3}) {
    SendBlock({0x02, 0x00, 0x10, 0x00}, Rows({line}));
  }
  SendLastBlock({0x02, 0x20, 0x10, 0x00}, Rows({4}));
  CHECK(Acquire(64).image == Rows({1, 2, 3, 4}));
}

TEST_CASE_FIXTURE(OpenB4, "standard: line mode goes by the level digit in the settings") {
  for (const char digit : {'3', '0', '\x80'}) {
    settings.commandLevelText[1] = digit;
    StartScan(BlockHeader(0, 0, 0), 0);
    device.FailNextRead();
    Acquire(64);
  }
}

TEST_CASE_FIXTURE(OpenB4, "standard: a block is read once and serves several calls") {
  StartScan(BlockHeader(0x20, 16, 4), 255);
  device.Reply(Rows({1, 2, 3, 4}));
  CHECK(Acquire(32, 3).image == Rows({1, 2}));
  CHECK(Acquire(16).image == Rows({3}));
  CHECK(Acquire(16).image == Rows({4}));
}

TEST_CASE_FIXTURE(OpenB4, "standard: lines longer than announced are read at their own length") {
  StartScan(BlockHeader(0x20, 20, 3), 255);
  device.Reply(Ramp(0, 60));
  const Bytes image = Acquire(48, 3).image;
  CHECK(Bytes(image.begin() + 16, image.begin() + 32) == Ramp(20, 16));
}

TEST_CASE_FIXTURE(OpenB4,
                  "standard: a header without STX ends the call with result 2, without a code") {
  StartScan(BlockHeader(0x00, 16, 1));
  SendLines(Rows({1}));
  device.Reply({0x15, 0x20, 0x10, 0x00, 0x03, 0x00});
  CheckAcquireFails(64, 0);
}

TEST_CASE("standard: a failing transfer of a block ends the call with result 2") {
  const std::string line = "<" + Hex(Rows({1}));
  for (const std::string& block : {std::string("<!"), line + ">!", line + "> 06 <!"}) {
    CAPTURE(block);
    StandardScanner scanner("B4");
    scanner.StartScan(BlockHeader(0x00, 16, 1));
    scanner.device.Converse(block);
    scanner.CheckAcquireFails(64, 0);
  }
}

TEST_CASE_FIXTURE(OpenB3, "standard: in line mode a failing header ends the call too") {
  StartScan(BlockHeader(0, 16, 1), 0);
  device.Reply({0x06, 0x20, 0x10, 0x00});
  CHECK(Acquire(64).record.status == kFailed);
}

TEST_CASE("standard: a block without lines asks for the status and ends the call") {
  for (const bool readable : {true, false}) {
    StandardScanner scanner("B4");
    scanner.StartScan(BlockHeader(0x00, 16, 0));
    if (readable) scanner.AnswerStatus(Status(0x80, 0x4E));
    if (!readable) scanner.device.FailNextWrite();
    scanner.CheckAcquireFails(64, 0);
  }
}

TEST_CASE_FIXTURE(
    OpenB4, "standard: a call that failed before any line was delivered starts the scan again") {
  StartScan(BlockHeader(0x00, 16, 4));
  device.FailNextRead();
  Acquire(64);
  AcceptUpload(UploadOf("B4"));
  device.ExpectBlock(0x1B, 'd', {0x04});
  AnswerStart(BlockHeader(0x20, 16, 4));
  device.Reply(Rows({1, 2, 3, 4}));
  CHECK(Acquire(64).image == Rows({1, 2, 3, 4}));
}

TEST_CASE_FIXTURE(
    OpenB4, "standard: status bit 0x40 of a block disarms: the next call goes on with the scan") {
  StartScan(BlockHeader(0x40, 16, 1));
  SendLines(Rows({1}));
  device.FailNextRead();
  CHECK(Acquire(64).record.status == kFailed);
  SendLastBlock(BlockHeader(0x20, 16, 4), Rows({2, 3, 4, 5}));
  CHECK(Acquire(64).image == Rows({2, 3, 4, 5}));
}

TEST_CASE_FIXTURE(OpenB4, "standard: status bit 0x40 of the last block does not disarm") {
  StartScan(BlockHeader(0x60, 16, 4));
  device.FailNextRead();
  Acquire(64);
  device.FailNextWrite();  // ESC F of a new start
  device.FailNextWrite();  // ESC d
  device.FailNextWrite();  // ESC f
  Acquire(64);
  CHECK(PMGetScanError() == 22);
}

TEST_CASE_FIXTURE(OpenB4, "standard: behind a last block with too few lines the rows are white") {
  StartScan(BlockHeader(0x20, 16, 2));
  device.Reply(Rows({1, 2}));
  const Band band = Acquire(64);
  CHECK(band.image == Rows({1, 2, 0xFF, 0xFF}));
  CHECK(band.record.status == kGoOn);
}

TEST_CASE_FIXTURE(
    OpenB4,
    "standard: behind a block that failed and a reset the scan goes on, without older rows") {
  StartScan(BlockHeader(0x00, 16, 2), 255);
  SendLines(Rows({1, 2}));
  REQUIRE(Acquire(32, 3).record.lines == 2);
  device.Reply(BlockHeader(0x20, 16, 2)).FailNextRead(Rows({7, 8}));
  CheckAcquireFails(32, 0);
  AnswerReset();
  CHECK(PMReset() == 1);
  device.FailNextRead();
  CHECK(Acquire(32).Rows(16) == "A5 A5");
  SendLastBlock(BlockHeader(0x20, 16, 1), Rows({9}));
  CHECK(Acquire(32).Rows(16) == "09 FF");
}

TEST_CASE_FIXTURE(OpenB3, "standard: in line mode the last line stays behind the last block") {
  StartScan(BlockHeader(0, 16, 1), 0);
  SendLastBlock({0x02, 0x20, 0x10, 0x00}, Rows({7}));
  CHECK(Acquire(64).image == Rows({7, 7, 7, 7}));
}

TEST_CASE_FIXTURE(
    OpenB4, "standard: an abort cancels the next block, and white lines follow without transfers") {
  settings.areaHeightPx = 8;
  StartScanOf(Replaced(UploadOf("B4"), "04 00", "08 00"), BlockHeader(0x00, 16, 2), 0x02, 1);
  SendLines(Rows({1, 2}));
  CHECK(Acquire(32).image == Rows({1, 2}));
  device.Reply(BlockHeader(0x00, 16, 2)).Reply(Rows({3, 4})).Expect({0x18}).Reply({0x06});
  PMAbortScan();
  CHECK(Acquire(32).image == Fill(32, 0xFF));
  const Band band = Acquire(64);
  CHECK(band.image == Fill(64, 0xFF));
  CHECK(band.record.done == 1);
  CHECK(band.record.status == kGoOn);
}

TEST_CASE_FIXTURE(OpenB4, "standard: an abort drops the lines that were received") {
  StartScan(BlockHeader(0x00, 16, 2), 255);
  SendLines(Rows({1, 2}));
  CHECK(Acquire(16, 3).image == Rows({1}));
  device.Reply(BlockHeader(0x00, 16, 2)).Reply(Rows({3, 4})).Expect({0x18}).Reply({0x06});
  PMAbortScan();
  CHECK(Acquire(48).image == Fill(48, 0xFF));
}

TEST_CASE("standard: an abort on the feeder ejects the page, once") {
  FeederScanner scanner;
  scanner.StartScan(BlockHeader(0x00, 16, 1));
  scanner.SendLines(Rows({1}));
  CHECK(scanner.Acquire(16, 3).image == Rows({1}));
  scanner.device.Reply(BlockHeader(0x00, 16, 2)).Reply(Rows({3, 4})).Expect({0x18}).Reply({0x06});
  scanner.ExpectEject();
  PMAbortScan();
  CHECK(scanner.Acquire(48).record.done == 1);
}

TEST_CASE_FIXTURE(OpenB4, "standard: an abort that meets the last block sends nothing") {
  StartScan(BlockHeader(0x00, 16, 1), 255);
  SendLines(Rows({1}));
  Acquire(16, 3);
  SendLastBlock(BlockHeader(0x20, 16, 3), Rows({2, 3, 4}));
  PMAbortScan();
  CHECK(Acquire(48).image == Fill(48, 0xFF));
}

TEST_CASE_FIXTURE(OpenB4, "standard: an abort whose CAN is not acknowledged fails") {
  DeliverFirstLine();
  device.Reply(BlockHeader(0x00, 16, 1)).Reply(Rows({2})).Expect({0x18}).Reply({kNak});
  CHECK(AbortSet() == 0);
}

TEST_CASE_FIXTURE(OpenB3, "standard: an abort in line mode cancels the next line") {
  StartScan(BlockHeader(0, 16, 1), 0);
  SendBlock({0x02, 0x00, 0x10, 0x00}, Rows({1}));
  Acquire(16);
  device.Reply({0x02, 0x00, 0x10, 0x00}).Reply(Rows({2})).Expect({0x18}).Reply({0x06});
  CHECK(AbortSet() == 1);
  CHECK(Acquire(48).image == Fill(48, 0xFF));
}

TEST_CASE_FIXTURE(OpenB4, "standard: an abort in the progress routine cancels at the next block") {
  StartScan(BlockHeader(0x00, 16, 4));
  device.Reply(Rows({1, 2, 3, 4})).Expect({0x18}).Reply({0x06});
  duringProgress = PMAbortScan;
  CHECK(Acquire(64).image == Fill(64, 0xFF));
}

TEST_CASE_FIXTURE(OpenB4, "standard: an aborted scan's white is converted like any other line") {
  settings.previewMode = 1;
  StartScan(BlockHeader(0x00, 16, 1), 255);
  SendLines(Rows({0}));
  Acquire(16, 3);
  SendLastBlock(BlockHeader(0x20, 16, 3), Rows({2, 3, 4}));
  PMAbortScan();
  CHECK(Acquire(16).image == Fill(16, 234));
}

TEST_CASE_FIXTURE(OpenB4,
                  "standard: an abort between set-up and first call cancels the whole scan") {
  InitAcquire(1);
  PMAbortScan();
  CHECK(PMGetScanError() == 0);
  AcceptUpload(UploadOf("B4"));
  device.ExpectBlock(0x1B, 'd', {0x04});
  AnswerStart(BlockHeader(0x00, 16, 4));
  device.Reply(Rows({1, 2, 3, 4})).Expect({0x18}).Reply({0x06});
  CHECK(Acquire(64).image == Fill(64, 0xFF));
}

TEST_CASE_FIXTURE(OpenB4,
                  "standard: an abort between scans sends nothing, and the next scan is whole") {
  PMAbortScan();
  ScanPage();
  PMAbortScan();
  CHECK(PMGetScanError() == 0);
  CHECK(ScanPage().image == Ramp(0, 64));
}

TEST_CASE_FIXTURE(OpenB4, "standard: an abort behind a start that failed cancels the next block") {
  InitAcquire(1);
  AcceptUpload(UploadOf("B4"));
  device.ExpectBlock(0x1B, 'd', {0x04});
  AnswerStatus(Status(0x02));  // warming up
  CheckAcquireFails(64, 43);
  device.Reply(BlockHeader(0x00, 16, 4)).Reply(Ramp(0, 64)).Expect({0x18}).Reply({0x06});
  PMAbortScan();
  CHECK(PMGetScanError() == 43);
}

TEST_CASE_FIXTURE(OpenB4,
                  "standard: an abort without an active scan leaves the code of a failure") {
  settings.areaWidthPx = 70000;
  InitAcquire(1);
  PMAbortScan();
  CHECK(PMGetScanError() == 16);
}

}  // namespace
}  // namespace pmddb832::tests::standard
