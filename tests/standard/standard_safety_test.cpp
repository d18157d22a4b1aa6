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
    const Bytes record = FromHex(InitAcquire(1));
    device.Expect({0x1B, 0x46}).FailNextRead();
    device.FailNextWrite();  // ESC d
    AnswerStart(BlockHeader(0x20, static_cast<std::uint16_t>(raw.size()), 1));
    device.Reply(raw);
    return Acquire(std::size_t{record[8]} + std::size_t{record[9]} * 256);
  }
};

// A scan in blocks whose first one is declared too large to be read.
std::uint32_t CodeOfBlock(std::uint16_t lineBytes, std::uint16_t lines) {
  StandardScanner scanner("B4");
  scanner.StartScan(BlockHeader(0x20, lineBytes, lines));
  CHECK(scanner.Acquire(64).record.status == kFailed);
  return PMGetScanError();
}

TEST_CASE("standard: a block larger than the receive buffer is code 9 and is not read") {
  CHECK(CodeOfBlock(0xFFFF, 0xFFFF) == 9);
  CHECK(CodeOfBlock(16, 5) == 9);
  CHECK(CodeOfBlock(75, 1) == 9);
  CHECK(CodeOfBlock(0x8000, 0x2) == 9);
}

TEST_CASE_FIXTURE(OpenB4, "standard: a block as large as the receive buffer is read") {
  StartScan(BlockHeader(0x20, 74, 1));
  device.Reply(Fill(74, 5));
  CHECK(Acquire(64).image == Fill(16, 5) + Fill(48, 0xFF));
}

TEST_CASE_FIXTURE(OpenB4, "standard: a later block that is too large is code 9 too") {
  StartScan(BlockHeader(0x00, 16, 1));
  SendLines(Fill(16, 1));
  device.Reply(BlockHeader(0x00, 0x8000, 0x8000));
  CheckAcquireFails(64, 9);
}

TEST_CASE_FIXTURE(OpenB3, "standard: a line that is too large in line mode is code 9") {
  StartScan(BlockHeader(0, 0, 0), 0);
  device.Reply({0x02, 0x20, 0xFF, 0xFF});
  CheckAcquireFails(64, 9);
}

TEST_CASE_FIXTURE(OpenB4, "standard: lines of 0 bytes give white rows") {
  StartScan(BlockHeader(0x20, 0, 4));
  device.Reply({});
  CHECK(Acquire(64).image == Fill(64, 0xFF));
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
    scanner.Set("pixelType=0 areaWidthPx=217 areaHeightPx=1 mirrorImage=1");
    scanner.InitAcquire(1);
    scanner.AcceptUpload(UploadOf(level, "D 01, A 00 00 00 00 E0 00 01 00"));
    const bool blocks = scanner.level == "B4";
    if (blocks) scanner.device.ExpectBlock(0x1B, 'd', {0x01});
    scanner.AnswerStart(BlockHeader(0x20, 28, 1));
    if (!blocks) scanner.device.Reply({0x02, 0x20, 28, 0x00});
    scanner.device.Reply(Ramp(1, 28));
    CHECK(scanner.Acquire(28).image == Ramp(1, 28));  // and no pad byte behind them
  }
}

TEST_CASE_FIXTURE(OpenB4,
                  "standard: a mirrored grey line trimmed by its pads is white where it ends") {
  Set("areaWidthPx=13 areaHeightPx=1 mirrorImage=1");  // 16 pixels are sent, 3 of them are pads
  StartScanOf(UploadOf("B4", "A 00 00 00 00 10 00 01 00"), BlockHeader(0x20, 14, 1), 0x01, 1);
  device.Reply(Ramp(0, 14));
  CHECK(Acquire(16).image == Ramp(3, 11) + Fill(5, 0xFF));
}

TEST_CASE_FIXTURE(OpenB4, "standard: an acquisition without a set-up is code 9 and sends nothing") {
  CheckNothingAcquired();
}

TEST_CASE_FIXTURE(OpenB4,
                  "standard: an abort right behind an open sends nothing and sets no code") {
  PMAbortScan();
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(OpenB4, "standard: an acquisition behind a set-up of empty lines is code 9") {
  InitAcquire();
  settings.areaWidthPx = 0;
  InitAcquire();
  CheckNothingAcquired();
}

TEST_CASE_FIXTURE(StandardScanner, "standard: nothing is acquired or aborted after a failed open") {
  AnswerProbe();
  device.Expect({0x1B, 0x40}).Reply({kNak});
  REQUIRE(PMOpenScanner(&settings) == 0);
  InitAcquire();
  CheckNothingAcquired();
  PMAbortScan();
  CHECK(PMGetScanError() == 9);
}

TEST_CASE_FIXTURE(
    OpenB4, "standard: nothing is acquired or aborted after a close in the middle of a scan") {
  DeliverFirstLine();
  PMCloseScanner();
  CheckNothingAcquired();
  PMAbortScan();
  CHECK(PMGetScanError() == 9);
}

TEST_CASE_FIXTURE(OpenB4, "standard: a scanner whose channel went away closes without it") {
  delete currentChannel;
  currentChannel = nullptr;
  PMCloseScanner();
}

TEST_CASE_FIXTURE(OpenB4, "standard: a scan that was closed does not go on after the next open") {
  DeliverFirstLine();
  PMCloseScanner();
  AnswerIdentification(Identity());
  REQUIRE(OpenSet() == 1);
  CheckAcquireFails(16, 9);
}

TEST_CASE_FIXTURE(OpenB4, "standard: a close in the progress routine ends the call with code 9") {
  StartScan(BlockHeader(0x20, 16, 4));
  duringProgress = PMCloseScanner;
  CheckAcquireFails(64, 9);
}

TEST_CASE_FIXTURE(OpenA5,
                  "standard: a page is ejected behind a close in the last call of the routine") {
  StartScan(BlockHeader(0x20, 16, 4));
  device.Reply(Ramp(0, 64)).Expect({0x0C}).Reply({0x06});
  atPercent = 100;
  duringProgress = PMCloseScanner;
  const Band band = Acquire(64);
  CHECK(band.record.status == kGoOn);
  CHECK(band.image == Ramp(0, 64));
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(OpenB4, "standard: a set-up in the progress routine ends the call with 9") {
  StartScan(BlockHeader(0x20, 16, 4));
  duringProgress = [this] {
    Set("areaWidthPx=1000 areaHeightPx=0");
    InitAcquire(1);
  };
  const Band band = Acquire(64);
  CHECK(band.record.status == kFailed);
  CHECK(band.image == Fill(64, 0xA5));
  CHECK(PMGetScanError() == 9);
}

TEST_CASE_FIXTURE(
    OpenB4, "standard: an acquisition in the progress routine does no harm to the outer one") {
  StartScan(BlockHeader(0x00, 16, 1));
  AcceptUpload(UploadOf("B4"));
  device.ExpectBlock(0x1B, 'd', {0x04});
  AnswerStart(BlockHeader(0x20, 16, 4));
  device.Reply(Ramp(0, 64));
  duringProgress = [this] { CHECK(Acquire(64).image == Ramp(0, 64)); };
  CHECK(Acquire(64).image == Fill(64, 0xFF));  // the inner call had all the lines
}

TEST_CASE_FIXTURE(OpenB8, "standard: wider lines after a focus call stay in the rows of the scan") {
  StartScan(BlockHeader(0x00, 16, 2), 2);
  SendLines(Fill(32, 1));
  CHECK(Acquire(32).image == Fill(32, 1));
  settings.areaWidthPx = 64;
  AcceptUpload(UploadOf("B8", "A 00 00 00 00 40 00 04 00"));
  device.ExpectBlock(0x1B, 'p', {0xFF}).FailNextWrite();
  PMSetFocus(1, 0);
  SendLastBlock(BlockHeader(0x20, 16, 2), Fill(32, 2));
  CHECK(Acquire(32).image == Fill(32, 2));
}

TEST_CASE_FIXTURE(OpenB8,
                  "standard: a width of 0 after a focus call is code 1, before the area is sent") {
  InitAcquire();
  settings.areaWidthPx = 0;
  const std::string upload = UploadOf("B8", "-A");
  AcceptUpload(upload);
  device.ExpectBlock(0x1B, 'p', {0xFF}).FailNextWrite();
  PMSetFocus(1, 0);
  AcceptUpload(upload);
  CheckAcquireFails(64, 1);
}

TEST_CASE_FIXTURE(
    OpenB8, "standard: a width of 0 that no upload refused is code 16 where lines are counted") {
  InitAcquire();
  settings.areaWidthPx = 0;
  device.Expect({0x1B, 0x46}).FailNextRead();
  device.ExpectBlock(0x1B, 'p', {0xFF}).FailNextWrite();
  PMSetFocus(1, 0);
  device.Expect({0x1B, 0x46}).FailNextRead();
  CheckAcquireFails(64, 16);
}

TEST_CASE_FIXTURE(OpenB4, "standard: a refused line of gigabytes is code 16 and sends nothing") {
  settings.areaWidthPx = 0xFFFF0000;
  InitAcquire();
  CHECK(PMGetScanError() == 16);
  CheckAcquireFails(64, 16);
}

TEST_CASE_FIXTURE(OpenB4, "standard: an unload in the middle of a scan leaves nothing allocated") {
  DeliverFirstLine();
  PMExit();
  CHECK(system.heapBlocks == 0);
}

}  // namespace
}  // namespace pmddb832::tests::standard
