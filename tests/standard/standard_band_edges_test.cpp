#include <cstdlib>

#include "tests/standard/standard_fixture.h"

// What the rows and the record tell at the edges of a scan: behind its last block, behind a cancel,
// in lines that are longer than the row, of types that have no conversion.

namespace pmddb832::tests::standard {
namespace {

// What the record says of the bytes of a band of four lines, which the scanner sends as lines of so
// many bytes.
std::uint32_t BytesOfBand(std::uint32_t pixelType, std::uint32_t width, std::uint16_t lineBytes) {
  OpenB4 scanner;
  scanner.settings.pixelType = pixelType;
  scanner.settings.areaWidthPx = width;
  scanner.StartWithoutUpload(BlockHeader(0x20, lineBytes, 4));
  scanner.device.Reply(Ramp(0, std::size_t{lineBytes} * 4));
  return scanner.Acquire(std::size_t{scanner.setup.lineBytes} * 4, 3).record.bytes;
}

// The row of an aborted line of line art, the last block of which has only `received` bytes.
std::string AbortedLineArt(std::uint8_t invert, std::uint16_t received) {
  OpenB4 scanner;
  scanner.settings.pixelType = 0;
  scanner.settings.areaWidthPx = 64;
  scanner.settings.invertMono = invert;
  scanner.StartWithoutUpload(BlockHeader(0x00, 8, 1));
  scanner.SendLines(Fill(8, 0x0F));
  scanner.Acquire(8, 3);
  scanner.SendLastBlock(BlockHeader(0x20, received, 1), Fill(received, 0x0F));
  PMAbortScan();
  return scanner.Acquire(8).Hex();
}

TEST_CASE("standard: a type without conversion counts its pixels, which its rows do not hold") {
  CHECK(BytesOfBand(1, 16, 8) == 64);
  CHECK(BytesOfBand(3, 16, 8) == 64);
}

TEST_CASE("standard: of a raw line of line art what the row holds is counted") {
  CHECK(BytesOfBand(0, 17, 4) == 16);
  CHECK(BytesOfBand(0, 17, 5) == 16);
  CHECK(BytesOfBand(0, 17, 3) == 12);
}

TEST_CASE("standard: aborted line art is white as far as the scanner's line goes, then inverted") {
  CHECK(AbortedLineArt(0, 8) == "FF FF FF FF FF FF FF FF");
  CHECK(AbortedLineArt(1, 8) == "00 00 00 00 00 00 00 00");
  CHECK(AbortedLineArt(0, 3) == "FF FF FF A5 A5 A5 A5 A5");
  CHECK(AbortedLineArt(1, 3) == "00 00 00 A5 A5 A5 A5 A5");
}

TEST_CASE_FIXTURE(OpenB4, "standard: an abort reads and cancels the next block at once") {
  StartScan(BlockHeader(0x00, 16, 2), 255);
  SendLines(Fill(32, 1));
  REQUIRE(Acquire(16, 3).record.lines == 1);
  device.Reply(BlockHeader(0x00, 16, 2)).Reply(Fill(32, 2)).Expect({0x18}).Reply({0x06});
  CHECK(AbortSet() == 1);
}

TEST_CASE_FIXTURE(OpenB4, "standard: behind a cancel for a small buffer the next line repeats") {
  StartScan(BlockHeader(0x00, 16, 2), 255);
  SendLines(Fill(16, 1) + Fill(16, 2));
  REQUIRE(Acquire(16, 3).record.lines == 1);
  device.Reply(BlockHeader(0x00, 16, 2)).Reply(Fill(16, 3) + Fill(16, 4));
  device.Expect({0x18}).Reply({0x06});
  CHECK(Acquire(15).record.status == kFailed);
  CHECK(Acquire(32).Rows(16) == "03 03");
  CHECK(Acquire(32).Rows(16) == "03 A5");
}

TEST_CASE_FIXTURE(OpenFeederB4,
                  "standard: a page cancelled for a small buffer is not ejected twice") {
  settings.scanSource = 1;
  InitAcquire(1);
  AcceptUpload("e 01, " + UploadOf("B4"));
  AnswerStatus();
  device.ExpectBlock(0x1B, 'd', {0x01});
  AnswerStart(BlockHeader(0x00, 16, 1));
  SendLines(Fill(16, 1));
  REQUIRE(Acquire(16).record.lines == 1);
  device.Reply(BlockHeader(0x00, 16, 1)).Reply(Fill(16, 2)).Expect({0x18}).Reply({0x06});
  ExpectEject();
  CHECK(Acquire(15).record.status == kFailed);
  CHECK(Acquire(48).record.done == 1);
}

TEST_CASE_FIXTURE(OpenB4, "standard: behind the last block rows are white, however many") {
  settings.areaWidthPx = 4;
  settings.areaHeightPx = 70000;
  StartWithoutUpload(BlockHeader(0x20, 4, 1));
  device.Reply(Fill(4, 1));
  const Band first = Acquire(65535 * 4);
  CHECK(first.image == Fill(4, 1) + Fill(65534 * 4, 0xFF));
  CHECK(Acquire(4465 * 4).image == Fill(4465 * 4, 0xFF));
}

TEST_CASE_FIXTURE(OpenB4,
                  "standard: the palette's planes of an odd line have a byte for its last pixel") {
  settings.pixelType = 4;
  settings.areaWidthPx = 5;
  settings.areaHeightPx = 1;
  StartWithoutUpload(BlockHeader(0x20, 9, 1), 2);
  device.Reply(Fill(3, 0xFF) + Fill(3, 0x88) + Fill(3, 0x00));
  CHECK(Acquire(8).Hex() == "C6 C6 C6 C6 C6 A5 A5 A5");  // 36 * 5 + 6 * 3
}

TEST_CASE_FIXTURE(OpenB4, "standard: the receive buffer has 16 bytes more than it receives") {
  static std::size_t asked;
  system.takeHeapBlock = [](std::size_t bytes) {
    asked = bytes;
    return static_cast<std::uint8_t*>(std::calloc(bytes, 1));
  };
  system.giveHeapBlock = [](std::uint8_t* block) { std::free(block); };
  ScanPage();
  CHECK(asked == 64 + 10 + 16);
  InitAcquire(1);
  device.Unplug();
  Acquire(64, 3);
  CHECK(asked == 65280 + 16);
}

TEST_CASE_FIXTURE(OpenB3,
                  "standard: in line mode a line longer than the buffer is started all the same") {
  settings.areaWidthPx = 65272;
  InitAcquire(1);
  device.Expect({0x1B, 0x46}).FailNextRead();
  AnswerStart(BlockHeader(0, 0, 0));
  device.Reply({0x02, 0x20, 0x04, 0x00}).Reply(Fill(4, 1));
  CHECK(Acquire(65280).record.lines == 1);
}

TEST_CASE("standard: a block that a small buffer cancels disarms only if it is not the last one") {
  for (const std::uint8_t status : Bytes{0x00, 0x40, 0x60}) {
    CAPTURE(status);
    OpenB4 scanner;
    scanner.StartScan(BlockHeader(status, 16, 1), 1);
    scanner.device.Reply(Fill(16, 7));
    if (status != 0x60) scanner.device.Expect({0x18}).Reply({0x06});
    CHECK(scanner.Acquire(15).record.status == kFailed);
    const bool startsAgain = status != 0x40;
    if (startsAgain) {
      scanner.AcceptUpload(UploadOf("B4"));
      scanner.device.ExpectBlock(0x1B, 'd', {0x04});
      scanner.AnswerStart(BlockHeader(0x20, 16, 4));
      scanner.device.Reply(Fill(64, 1));
    }
    CHECK(scanner.Acquire(64).Rows(16) == (startsAgain ? "01 01 01 01" : "07 07 07 07"));
  }
}

TEST_CASE_FIXTURE(OpenB4, "standard: the next set-up arms again, whatever disarmed the last page") {
  StartScan(BlockHeader(0x40, 16, 3));
  SendLines(Fill(48, 1));
  SendLastBlock(BlockHeader(0x60, 16, 1), Fill(16, 2));
  CHECK(Acquire(64).Rows(16) == "01 01 01 02");
  CHECK(ScanPage().image == Ramp(0, 64));
}

TEST_CASE_FIXTURE(OpenB4,
                  "standard: an aborted preview is white throughout, however short its block") {
  settings.previewMode = 1;
  StartScan(BlockHeader(0x00, 16, 1), 255);
  SendLines(Fill(16, 0));
  Acquire(16, 3);
  SendLastBlock(BlockHeader(0x20, 8, 1), Fill(8, 0));
  PMAbortScan();
  CHECK(Acquire(16).image == Fill(16, 234));
}

TEST_CASE_FIXTURE(OpenB4,
                  "standard: a trimmed white line goes on with the block that was cancelled") {
  Set("areaWidthPx=9 mirrorImage=1");  // 16 pixels are sent, 7 of them are pads; rows have 12 bytes
  StartScanOf(UploadOf("B4", "A 00 00 00 00 10 00 04 00"), BlockHeader(0x00, 16, 1), 255, 1);
  SendLines(Fill(16, 1));
  Acquire(12, 3);
  device.Reply(BlockHeader(0x00, 24, 1)).Reply(Ramp(0, 24)).Expect({0x18}).Reply({0x06});
  PMAbortScan();
  CHECK(Acquire(12).image == Fill(5, 0xFF) + Ramp(12, 4) + Fill(3, 0xA5));
}

TEST_CASE_FIXTURE(OpenB4,
                  "standard: a line mode scan behind one in blocks has its lines in front") {
  ScanPage();
  settings.commandLevelText[1] = '3';
  StartScan(BlockHeader(0, 0, 0), 0);
  for (const std::uint8_t line : Bytes{1, 2, 3}) {
    SendBlock({0x02, 0x00, 0x10, 0x00}, Fill(16, line));
  }
  SendLastBlock({0x02, 0x20, 0x10, 0x00}, Fill(16, 4));
  CHECK(Acquire(64).Rows(16) == "01 02 03 04");
}

TEST_CASE_FIXTURE(OpenB4, "standard: a scan that is refused for its line holds no receive buffer") {
  ScanPage();
  CHECK(system.heapBlocks == 1);
  settings.areaWidthPx = 0x1000001;
  InitAcquire(1);
  CheckAcquireFails(64, 16);
  CHECK(system.heapBlocks == 0);
}

}  // namespace
}  // namespace pmddb832::tests::standard
