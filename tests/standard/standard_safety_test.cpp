#include "tests/standard/standard_fixture.h"

// Devices that declare what does not fit, hosts that call out of order: nothing is read or written
// outside a buffer, and nothing is sent that was not asked for.

namespace pmddb832::tests::standard {
namespace {

// A scan of one line of `width` pixels of a type in output format 1, without an upload, up to its
// first header. The row buffer is as long as the line that was announced.
struct OneLineScan : StandardScanner {
  OneLineScan(std::uint32_t pixelType, std::uint32_t width, std::uint32_t preview = 0,
              std::string_view openLevel = "B4")
      : StandardScanner(openLevel) {
    settings.pixelType = pixelType;
    settings.areaWidthPx = width;
    settings.areaHeightPx = 1;
    settings.previewMode = preview;
  }

  Band Scan(const Bytes& raw) {
    const Bytes setup = FromHex(InitAcquire(1));
    device.Expect({0x1B, 0x46}).FailNextRead();
    device.FailNextWrite();  // ESC d
    AnswerStart(BlockHeader(0x20, static_cast<std::uint16_t>(raw.size()), 1));
    device.Reply(raw);
    return Acquire(std::size_t{setup[8]} + std::size_t{setup[9]} * 256);
  }
};

// A scan in blocks whose first one is declared too large to be read.
std::uint32_t CodeOfBlock(std::uint16_t lineBytes, std::uint16_t lines) {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x20, lineBytes, lines));
  CHECK(scanner.Acquire(64).record.status == kFailed);
  return PMGetScanError();
}

void CheckRefused(StandardScanner& scanner) {
  const Band band = scanner.Acquire(64);
  CHECK(band.recordBytes == "02 00 00 00 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5");
  CHECK(band.image == Fill(64, 0xA5));
  CHECK(PMGetScanError() == 9);
}

TEST_CASE("standard: a block larger than the receive buffer is code 9 and is not read") {
  CHECK(CodeOfBlock(0xFFFF, 0xFFFF) == 9);
  CHECK(CodeOfBlock(16, 5) == 9);
  CHECK(CodeOfBlock(75, 1) == 9);
  CHECK(CodeOfBlock(0x8000, 0x2) == 9);
}

TEST_CASE("standard: a block as large as the receive buffer is read") {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x20, 74, 1));
  scanner.device.Reply(Fill(74, 5));
  CHECK(scanner.Acquire(64).image == Fill(16, 5) + Fill(48, 0xFF));
}

TEST_CASE("standard: a later block that is too large is code 9 too") {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x00, 16, 1));
  scanner.SendLines(Fill(16, 1));
  scanner.device.Reply(BlockHeader(0x00, 0x8000, 0x8000));
  CHECK(scanner.Acquire(64).record.status == kFailed);
  CHECK(PMGetScanError() == 9);
}

TEST_CASE("standard: a line that is too large in line mode is code 9") {
  StandardScanner scanner("B3");
  scanner.StartScan(BlockHeader(0, 0, 0), 0);
  scanner.device.Reply({0x02, 0x20, 0xFF, 0xFF});
  CHECK(scanner.Acquire(64).record.status == kFailed);
  CHECK(PMGetScanError() == 9);
}

TEST_CASE("standard: lines of 0 bytes give white rows") {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x20, 0, 4));
  scanner.device.Reply({});
  CHECK(scanner.Acquire(64).image == Fill(64, 0xFF));
}

TEST_CASE("standard: a line shorter than its pixels gives white behind them") {
  OneLineScan scan(2, 16);
  CHECK(scan.Scan(Ramp(1, 8)).image == Ramp(1, 8) + Fill(8, 0xFF));
}

TEST_CASE("standard: one channel for a colour type gives white behind its whole pixels") {
  OneLineScan scan(5, 16);
  scan.settings.monoScan = 1;
  CHECK(scan.Scan(Ramp(1, 16)).image == Ramp(1, 15) + Fill(33, 0xFF));
}

TEST_CASE("standard: a palette line without its last plane is white") {
  OneLineScan scan(4, 8);
  CHECK(scan.Scan(Fill(8, 0x80)).image == Fill(8, 0xFF));
}

TEST_CASE("standard: deep grey in preview mode stays in the row that was announced") {
  OneLineScan scan(8, 16, 1);
  CHECK(scan.Scan(Ramp(1, 32)).image == Ramp(1, 16));
}

TEST_CASE("standard: deep colour in preview mode with 8-bit samples is white where they end") {
  OneLineScan scan(7, 8, 1);
  CHECK(scan.Scan(Ramp(1, 24)).image ==
        FromHex("02 04 06 08 0A 0C 0E 10 12 14 16 18") + Fill(12, 0xFF));
}

TEST_CASE("standard: blocks of the palette and of previewed deep types may be longer than rows") {
  for (const auto& [type, lineBytes] : {std::pair{4u, 24}, std::pair{7u, 96}, std::pair{8u, 32}}) {
    StandardScanner scanner("B4");
    scanner.settings.pixelType = type;
    scanner.settings.previewMode = 1;
    scanner.InitAcquire(1);
    scanner.device.Expect({0x1B, 0x46}).FailNextRead();
    scanner.device.ExpectBlock(0x1B, 'd', {0x04});
    scanner.AnswerStart(BlockHeader(0x20, static_cast<std::uint16_t>(lineBytes), 4));
    scanner.device.Reply(Fill(static_cast<std::size_t>(lineBytes) * 4, 0x10));
    CHECK(scanner.Acquire(type == 7 ? 192 : 64).record.status == kGoOn);
  }
}

TEST_CASE("standard: mirrored line art of 217 pixels below level 3 stays in its row") {
  for (const char* level : {"B3", "B4"}) {
    StandardScanner scanner(level);
    scanner.settings.pixelType = 0;
    scanner.settings.areaWidthPx = 217;
    scanner.settings.areaHeightPx = 1;
    scanner.settings.mirrorImage = 1;
    scanner.InitAcquire(1);
    const std::string upload = Replaced(UploadOf(level), "D 08", "D 01");
    scanner.AcceptUpload(
        Replaced(upload, "A 00 00 00 00 10 00 04 00", "A 00 00 00 00 E0 00 01 00"));
    const bool blocks = scanner.level == "B4";
    if (blocks) scanner.device.ExpectBlock(0x1B, 'd', {0x01});
    scanner.AnswerStart(BlockHeader(0x20, 28, 1));
    if (!blocks) scanner.device.Reply({0x02, 0x20, 28, 0x00});
    scanner.device.Reply(Ramp(1, 28));
    CHECK(scanner.Acquire(28).image == Ramp(1, 28));  // and no pad byte behind them
  }
}

TEST_CASE("standard: a mirrored grey line trimmed by its pads is white where it ends") {
  StandardScanner scanner("B4");
  scanner.settings.areaWidthPx = 13;
  scanner.settings.areaHeightPx = 1;
  scanner.settings.mirrorImage = 1;  // 16 pixels are sent, 3 of them are pads
  scanner.InitAcquire(1);
  scanner.AcceptUpload(
      Replaced(UploadOf("B4"), "A 00 00 00 00 10 00 04 00", "A 00 00 00 00 10 00 01 00"));
  scanner.device.ExpectBlock(0x1B, 'd', {0x01});
  scanner.AnswerStart(BlockHeader(0x20, 14, 1));
  scanner.device.Reply(Ramp(0, 14));
  CHECK(scanner.Acquire(16).image == Ramp(3, 11) + Fill(5, 0xFF));
}

TEST_CASE("standard: an acquisition without a set-up is code 9 and sends nothing") {
  StandardScanner scanner("B4");
  CheckRefused(scanner);
}

TEST_CASE("standard: an abort right behind an open is code 9 and sends nothing") {
  const StandardScanner scanner("B4");
  PMAbortScan();
  CHECK(PMGetScanError() == 9);
}

TEST_CASE("standard: an acquisition behind a set-up of empty lines is code 9") {
  StandardScanner scanner("B4");
  scanner.InitAcquire();
  scanner.settings.areaWidthPx = 0;
  scanner.InitAcquire();
  CheckRefused(scanner);
}

TEST_CASE_FIXTURE(StandardScanner, "standard: nothing is acquired or aborted after a failed open") {
  AnswerProbe();
  device.Expect({0x1B, 0x40}).Reply({kNak});
  REQUIRE(PMOpenScanner(&settings) == 0);
  InitAcquire();
  CheckRefused(*this);
  PMAbortScan();
  CHECK(PMGetScanError() == 9);
}

TEST_CASE("standard: nothing is acquired or aborted after a close in the middle of a scan") {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x00, 16, 1), 1);
  scanner.SendLines(Fill(16, 1));
  scanner.Acquire(16);
  PMCloseScanner();
  CheckRefused(scanner);
  PMAbortScan();
  CHECK(PMGetScanError() == 9);
}

TEST_CASE("standard: a scanner whose channel went away closes without it") {
  const StandardScanner scanner("B4");
  delete currentChannel;
  currentChannel = nullptr;
  PMCloseScanner();
}

TEST_CASE("standard: a scan that was closed does not go on after the next open") {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x00, 16, 1), 1);
  scanner.SendLines(Fill(16, 1));
  scanner.Acquire(16);
  PMCloseScanner();
  scanner.AnswerReset();
  scanner.Answer('?', {Product()});
  scanner.Answer('I', {Identity()});
  scanner.AnswerStatus();
  scanner.Answer('?', {Product()});
  REQUIRE(currentCommandSet->Open() == 1);
  CHECK(scanner.Acquire(16).record.status == kFailed);
  CHECK(PMGetScanError() == 9);
}

TEST_CASE("standard: a close in the progress routine ends the call with code 9") {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x20, 16, 4));
  StandardScanner::duringProgress = [] { PMCloseScanner(); };
  CHECK(scanner.Acquire(64).record.status == kFailed);
  CHECK(PMGetScanError() == 9);
}

TEST_CASE("standard: a close in the last call of the progress routine ejects nothing") {
  StandardScanner scanner("A5");
  scanner.StartScan(BlockHeader(0x20, 16, 4));
  scanner.device.Reply(Ramp(0, 64));
  StandardScanner::duringProgress = [] {
    if (StandardScanner::progress.back() == 100) PMCloseScanner();
  };
  CHECK(scanner.Acquire(64).record.status == kFailed);
}

TEST_CASE("standard: settings that are taken away in the progress routine end the call") {
  for (const std::uint32_t at : {0u, 100u}) {
    StandardScanner scanner("B4");
    scanner.StartScan(BlockHeader(0x20, 16, 4));
    if (at == 100) scanner.device.Reply(Ramp(0, 64));
    StandardScanner::duringProgress = [at] {
      if (StandardScanner::progress.back() == at) PMSetScannerHardware(nullptr);
    };
    CHECK(scanner.Acquire(64).record.status == kFailed);
    CHECK(PMGetScanError() == 9);
    PMSetScannerHardware(&scanner.settings);
  }
}

TEST_CASE("standard: a set-up in the progress routine does not move the rows of the call") {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x20, 16, 4));
  scanner.device.Reply(Ramp(0, 64));
  StandardScanner::duringProgress = [&scanner] {
    StandardScanner::duringProgress = nullptr;
    scanner.settings.areaWidthPx = 1000;
    scanner.settings.areaHeightPx = 0;
    AcquisitionSetup setup;
    PMInitAcquire(1, &StandardScanner::NoteProgress, &setup);
  };
  CHECK(scanner.Acquire(64).image == Ramp(0, 64));
}

TEST_CASE("standard: a set-up of no lines in the progress routine is told as 100") {
  StandardScanner scanner("B4");
  scanner.settings.areaHeightPx = 11;
  scanner.InitAcquire(1);
  scanner.AcceptUpload(Replaced(UploadOf("B4"), "10 00 04 00", "10 00 0B 00"));
  scanner.device.ExpectBlock(0x1B, 'd', {0x0B});
  scanner.AnswerStart(BlockHeader(0x20, 16, 11));
  scanner.device.Reply(Fill(176, 5));
  StandardScanner::duringProgress = [&scanner] {
    StandardScanner::duringProgress = nullptr;
    scanner.settings.areaHeightPx = 0;
    AcquisitionSetup setup;
    PMInitAcquire(1, &StandardScanner::NoteProgress, &setup);
  };
  CHECK(scanner.Acquire(176).image == Fill(176, 5));
  CHECK(StandardScanner::progress == std::vector<std::uint32_t>{0, 100, 100});
}

TEST_CASE("standard: an acquisition in the progress routine does no harm to the outer one") {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x00, 16, 1));
  scanner.AcceptUpload(UploadOf("B4"));
  scanner.device.ExpectBlock(0x1B, 'd', {0x04});
  scanner.AnswerStart(BlockHeader(0x20, 16, 4));
  scanner.device.Reply(Ramp(0, 64));
  StandardScanner::duringProgress = [&scanner] {
    StandardScanner::duringProgress = nullptr;
    CHECK(scanner.Acquire(64).image == Ramp(0, 64));
  };
  CHECK(scanner.Acquire(64).image == Fill(64, 0xFF));  // the inner call had all the lines
}

TEST_CASE("standard: wider lines after a focus call stay in the rows of the scan") {
  StandardScanner scanner("B8");
  scanner.StartScan(BlockHeader(0x00, 16, 2), 2);
  scanner.SendLines(Fill(32, 1));
  CHECK(scanner.Acquire(32).image == Fill(32, 1));
  scanner.settings.areaWidthPx = 64;
  scanner.AcceptUpload(Replaced(UploadOf("B8"), "10 00 04 00", "40 00 04 00"));
  scanner.device.ExpectBlock(0x1B, 'p', {0xFF}).FailNextWrite();
  PMSetFocus(1, 0);
  scanner.SendLastBlock(BlockHeader(0x20, 16, 2), Fill(32, 2));
  CHECK(scanner.Acquire(32).image == Fill(32, 2));
}

TEST_CASE("standard: a width of 0 after a focus call is code 1, before the area is sent") {
  StandardScanner scanner("B8");
  scanner.InitAcquire();
  scanner.settings.areaWidthPx = 0;
  const std::string upload = Replaced(UploadOf("B8"), ", A 00 00 00 00 10 00 04 00", "");
  scanner.AcceptUpload(upload);
  scanner.device.ExpectBlock(0x1B, 'p', {0xFF}).FailNextWrite();
  PMSetFocus(1, 0);
  scanner.AcceptUpload(upload);
  CHECK(scanner.Acquire(64).record.status == kFailed);
  CHECK(PMGetScanError() == 1);
}

TEST_CASE("standard: a width of 0 that no upload refused is code 16 where lines are counted") {
  StandardScanner scanner("B8");
  scanner.InitAcquire();
  scanner.settings.areaWidthPx = 0;
  scanner.device.Expect({0x1B, 0x46}).FailNextRead();
  scanner.device.ExpectBlock(0x1B, 'p', {0xFF}).FailNextWrite();
  PMSetFocus(1, 0);
  scanner.device.Expect({0x1B, 0x46}).FailNextRead();
  CHECK(scanner.Acquire(64).record.status == kFailed);
  CHECK(PMGetScanError() == 16);
}

TEST_CASE("standard: a refused line of gigabytes is code 16 and sends nothing") {
  StandardScanner scanner("B4");
  scanner.settings.areaWidthPx = 0xFFFF0000;
  scanner.InitAcquire();
  CHECK(PMGetScanError() == 16);
  CHECK(scanner.Acquire(64).record.status == kFailed);
  CHECK(PMGetScanError() == 16);
}

TEST_CASE("standard: an unload in the middle of a scan leaves nothing allocated") {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x00, 16, 1), 1);
  scanner.SendLines(Fill(16, 1));
  scanner.Acquire(16);
  PMExit();
  CHECK(scanner.system.heapBlocks == 0);
}

}  // namespace
}  // namespace pmddb832::tests::standard
