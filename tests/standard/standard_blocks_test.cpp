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

TEST_CASE("standard: a block is acknowledged, and the next one has a header of six bytes") {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x00, 16, 3));
  scanner.device.Reply(Rows({1, 2, 3})).Expect({0x06});
  scanner.device.Reply({0x02, 0x20, 0x10, 0x00, 0x01, 0x00}).Reply(Rows({4}));
  CHECK(scanner.Acquire(64).image == Rows({1, 2, 3, 4}));
}

TEST_CASE("standard: in line mode each line has a header of four bytes, the first one too") {
  StandardScanner scanner("B3");
  scanner.StartScan({0x02, 0x00, 0x63, 0x00, 0x63, 0x00}, 0);
  for (const std::uint8_t line : Bytes{1, 2, 3}) {
    scanner.SendBlock({0x02, 0x00, 0x10, 0x00}, Rows({line}));
  }
  scanner.SendLastBlock({0x02, 0x20, 0x10, 0x00}, Rows({4}));
  CHECK(scanner.Acquire(64).image == Rows({1, 2, 3, 4}));
}

TEST_CASE("standard: line mode goes by the level digit in the settings") {
  StandardScanner scanner("B4");
  for (const char digit : {'3', '0', '\x80'}) {
    scanner.settings.commandLevelText[1] = digit;
    scanner.StartScan(BlockHeader(0, 0, 0), 0);
    scanner.device.FailNextRead();
    scanner.Acquire(64);
  }
}

TEST_CASE("standard: a block is read once and serves several calls") {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x20, 16, 4), 255);
  scanner.device.Reply(Rows({1, 2, 3, 4}));
  CHECK(scanner.Acquire(32, 3).image == Rows({1, 2}));
  CHECK(scanner.Acquire(16).image == Rows({3}));
  CHECK(scanner.Acquire(16).image == Rows({4}));
}

TEST_CASE("standard: lines longer than announced are read at their own length") {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x20, 20, 3), 255);
  scanner.device.Reply(Ramp(0, 60));
  const Bytes image = scanner.Acquire(48, 3).image;
  CHECK(Bytes(image.begin() + 16, image.begin() + 32) == Ramp(20, 16));
}

TEST_CASE("standard: a header without STX ends the call with result 2, without a code") {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x00, 16, 1));
  scanner.SendLines(Rows({1}));
  scanner.device.Reply({0x15, 0x20, 0x10, 0x00, 0x03, 0x00});
  CHECK(scanner.Acquire(64).record.status == kFailed);
  CHECK(PMGetScanError() == 0);
}

TEST_CASE("standard: a failing transfer of a block ends the call with result 2") {
  const std::vector<std::function<void(StandardScanner&)>> scripts{
      [](StandardScanner& scanner) { scanner.device.FailNextRead(); },
      [](StandardScanner& scanner) { scanner.device.Reply(Rows({1})).FailNextWrite(); },
      [](StandardScanner& scanner) {
        scanner.SendLines(Rows({1}));
        scanner.device.FailNextRead();
      }};
  for (const auto& script : scripts) {
    StandardScanner scanner("B4");
    scanner.StartScan(BlockHeader(0x00, 16, 1));
    script(scanner);
    CHECK(scanner.Acquire(64).record.status == kFailed);
    CHECK(PMGetScanError() == 0);
  }
}

TEST_CASE("standard: in line mode a failing header ends the call too") {
  StandardScanner scanner("B3");
  scanner.StartScan(BlockHeader(0, 16, 1), 0);
  scanner.device.Reply({0x06, 0x20, 0x10, 0x00});
  CHECK(scanner.Acquire(64).record.status == kFailed);
}

TEST_CASE("standard: a block without lines asks for the status and ends the call") {
  for (const bool readable : {true, false}) {
    StandardScanner scanner("B4");
    scanner.StartScan(BlockHeader(0x00, 16, 0));
    if (readable) scanner.AnswerStatus(Status(0x80, 0x4E));
    if (!readable) scanner.device.FailNextWrite();
    CHECK(scanner.Acquire(64).record.status == kFailed);
    CHECK(PMGetScanError() == 0);
  }
}

TEST_CASE("standard: a call that failed before any line was delivered starts the scan again") {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x00, 16, 4));
  scanner.device.FailNextRead();
  scanner.Acquire(64);
  scanner.AcceptUpload(UploadOf("B4"));
  scanner.device.ExpectBlock(0x1B, 'd', {0x04});
  scanner.AnswerStart(BlockHeader(0x20, 16, 4));
  scanner.device.Reply(Rows({1, 2, 3, 4}));
  CHECK(scanner.Acquire(64).image == Rows({1, 2, 3, 4}));
}

TEST_CASE("standard: status bit 0x40 of a block disarms: the next call goes on with the scan") {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x40, 16, 1));
  scanner.SendLines(Rows({1}));
  scanner.device.FailNextRead();
  CHECK(scanner.Acquire(64).record.status == kFailed);
  scanner.SendLastBlock(BlockHeader(0x20, 16, 4), Rows({2, 3, 4, 5}));
  CHECK(scanner.Acquire(64).image == Rows({2, 3, 4, 5}));
}

TEST_CASE("standard: status bit 0x40 of the last block does not disarm") {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x60, 16, 4));
  scanner.device.FailNextRead();
  scanner.Acquire(64);
  scanner.device.FailNextWrite();  // ESC F of a new start
  scanner.device.FailNextWrite();  // ESC d
  scanner.device.FailNextWrite();  // ESC f
  scanner.Acquire(64);
  CHECK(PMGetScanError() == 22);
}

TEST_CASE("standard: behind a last block with too few lines the rows are white") {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x20, 16, 2));
  scanner.device.Reply(Rows({1, 2}));
  const Band band = scanner.Acquire(64);
  CHECK(band.image == Rows({1, 2, 0xFF, 0xFF}));
  CHECK(band.record.status == kGoOn);
}

TEST_CASE("standard: in line mode the last line stays behind the last block") {
  StandardScanner scanner("B3");
  scanner.StartScan(BlockHeader(0, 16, 1), 0);
  scanner.SendLastBlock({0x02, 0x20, 0x10, 0x00}, Rows({7}));
  CHECK(scanner.Acquire(64).image == Rows({7, 7, 7, 7}));
}

TEST_CASE("standard: an abort cancels the next block, and white lines follow without transfers") {
  StandardScanner scanner("B4");
  scanner.settings.areaHeightPx = 8;
  scanner.InitAcquire(1);
  scanner.AcceptUpload(Replaced(UploadOf("B4"), "04 00", "08 00"));
  scanner.device.ExpectBlock(0x1B, 'd', {0x02});
  scanner.AnswerStart(BlockHeader(0x00, 16, 2));
  scanner.SendLines(Rows({1, 2}));
  CHECK(scanner.Acquire(32).image == Rows({1, 2}));
  scanner.device.Reply(BlockHeader(0x00, 16, 2)).Reply(Rows({3, 4})).Expect({0x18}).Reply({0x06});
  PMAbortScan();
  CHECK(scanner.Acquire(32).image == Fill(32, 0xFF));
  const Band band = scanner.Acquire(64);
  CHECK(band.image == Fill(64, 0xFF));
  CHECK(band.record.done == 1);
  CHECK(band.record.status == kGoOn);
}

TEST_CASE("standard: an abort drops the lines that were received") {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x00, 16, 2), 255);
  scanner.SendLines(Rows({1, 2}));
  CHECK(scanner.Acquire(16, 3).image == Rows({1}));
  scanner.device.Reply(BlockHeader(0x00, 16, 2)).Reply(Rows({3, 4})).Expect({0x18}).Reply({0x06});
  PMAbortScan();
  CHECK(scanner.Acquire(48).image == Fill(48, 0xFF));
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

TEST_CASE("standard: an abort that meets the last block sends nothing") {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x00, 16, 1), 255);
  scanner.SendLines(Rows({1}));
  scanner.Acquire(16, 3);
  scanner.SendLastBlock(BlockHeader(0x20, 16, 3), Rows({2, 3, 4}));
  PMAbortScan();
  CHECK(scanner.Acquire(48).image == Fill(48, 0xFF));
}

TEST_CASE("standard: an abort whose CAN is not acknowledged fails") {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x00, 16, 1), 1);
  scanner.SendLines(Rows({1}));
  scanner.Acquire(16);
  scanner.device.Reply(BlockHeader(0x00, 16, 1)).Reply(Rows({2})).Expect({0x18}).Reply({kNak});
  CHECK(currentCommandSet->AbortScan() == 0);
}

TEST_CASE("standard: an abort in line mode cancels the next line") {
  StandardScanner scanner("B3");
  scanner.StartScan(BlockHeader(0, 16, 1), 0);
  scanner.SendBlock({0x02, 0x00, 0x10, 0x00}, Rows({1}));
  scanner.Acquire(16);
  scanner.device.Reply({0x02, 0x00, 0x10, 0x00}).Reply(Rows({2})).Expect({0x18}).Reply({0x06});
  CHECK(currentCommandSet->AbortScan() == 1);
  CHECK(scanner.Acquire(48).image == Fill(48, 0xFF));
}

TEST_CASE("standard: an abort in the progress routine cancels at the next block") {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x00, 16, 4));
  scanner.device.Reply(Rows({1, 2, 3, 4})).Expect({0x18}).Reply({0x06});
  StandardScanner::duringProgress = [] {
    StandardScanner::duringProgress = nullptr;
    PMAbortScan();
  };
  CHECK(scanner.Acquire(64).image == Fill(64, 0xFF));
}

TEST_CASE("standard: an aborted scan's white is converted like any other line") {
  StandardScanner scanner("B4");
  scanner.settings.previewMode = 1;
  scanner.StartScan(BlockHeader(0x00, 16, 1), 255);
  scanner.SendLines(Rows({0}));
  scanner.Acquire(16, 3);
  scanner.SendLastBlock(BlockHeader(0x20, 16, 3), Rows({2, 3, 4}));
  PMAbortScan();
  CHECK(scanner.Acquire(16).image == Fill(16, 234));
}

TEST_CASE("standard: an abort between set-up and first call cancels the whole scan") {
  StandardScanner scanner("B4");
  scanner.InitAcquire(1);
  PMAbortScan();
  CHECK(PMGetScanError() == 9);
  scanner.AcceptUpload(UploadOf("B4"));
  scanner.device.ExpectBlock(0x1B, 'd', {0x04});
  scanner.AnswerStart(BlockHeader(0x00, 16, 4));
  scanner.device.Reply(Rows({1, 2, 3, 4})).Expect({0x18}).Reply({0x06});
  CHECK(scanner.Acquire(64).image == Fill(64, 0xFF));
}

TEST_CASE("standard: an abort between scans sends nothing, and the next scan is whole") {
  StandardScanner scanner("B4");
  PMAbortScan();
  CHECK(PMGetScanError() == 9);
  scanner.ScanPage();
  PMAbortScan();
  CHECK(PMGetScanError() == 0);
  CHECK(scanner.ScanPage().image == Ramp(0, 64));
}

}  // namespace
}  // namespace pmddb832::tests::standard
