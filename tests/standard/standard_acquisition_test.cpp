#include <cstring>

#include "tests/standard/standard_fixture.h"

// PMAcquireImage: bands, rows, the record, progress, the end of the page.

namespace pmddb832::tests::standard {
namespace {

Bytes Rows(std::initializer_list<std::uint8_t> values) {
  Bytes rows;
  for (const std::uint8_t value : values) rows = rows + Fill(16, value);
  return rows;
}

// One line of `width` pixels of a type, as it arrives and as the host gets it.
Bytes ScanLine(StandardScanner& scanner, std::uint32_t pixelType, std::uint32_t width,
               const Bytes& raw, std::uint32_t outputFormat = 1) {
  scanner.settings.pixelType = pixelType;
  scanner.settings.areaWidthPx = width;
  scanner.settings.areaHeightPx = 1;
  const std::string setup = scanner.InitAcquire(outputFormat);
  scanner.device.Expect({0x1B, 0x46}).FailNextRead();  // no upload: not what is tested here
  scanner.device.FailNextWrite();                      // ESC d likewise
  const auto rawBytes = static_cast<std::uint16_t>(raw.size());
  scanner.AnswerStart(BlockHeader(0x20, rawBytes, 1));
  scanner.device.Reply(raw);
  return scanner.Acquire(FromHex(setup.substr(24, 5))[0]).image;
}

Bytes ScanLine(std::uint32_t pixelType, std::uint32_t width, const Bytes& raw,
               std::uint32_t outputFormat = 1) {
  StandardScanner scanner("B4");
  return ScanLine(scanner, pixelType, width, raw, outputFormat);
}

// A page of four lines from the selected source of a scanner with an option unit, and the answer to
// the eject behind it; none where it must not be ejected.
Band ScanPageFrom(StandardScanner& scanner, std::uint8_t source, const Bytes& ejectAnswer) {
  scanner.settings.scanSource = source;
  scanner.InitAcquire(1);
  scanner.AcceptUpload("e " + tests::Hex({source}) + ", " + UploadOf("B4"));
  if (source != 0) scanner.AnswerStatus();
  scanner.device.ExpectBlock(0x1B, 'd', {0x04});
  scanner.AnswerStart(BlockHeader(0x20, 16, 4));
  scanner.device.Reply(Ramp(0, 64));
  if (!ejectAnswer.empty()) scanner.device.Expect({0x0C}).Reply(ejectAnswer);
  return scanner.Acquire(64);
}

TEST_CASE_FIXTURE(
    OpenB4,
    "standard: the record tells status, end, lines and bytes, and nothing else is written") {
  const Band band = ScanPage();
  CHECK(band.recordBytes == "01 00 00 00 A5 A5 A5 A5 01 00 00 00 04 00 00 00 40 00 00 00");
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(OpenB4, "standard: bytes are counted without the alignment of the rows") {
  settings.pixelType = 5;
  settings.areaWidthPx = 5;  // 15 bytes in a row of 16
  StartWithoutUpload(BlockHeader(0x20, 24, 4));
  device.Reply(Ramp(0, 96));
  CHECK(Acquire(64, 3).record.bytes == 60);
}

TEST_CASE_FIXTURE(OpenB4, "standard: line art counts the bytes of the raw line") {
  Set("pixelType=0 areaWidthPx=17");
  StartWithoutUpload(BlockHeader(0x20, 3, 4));
  device.Reply(Ramp(0, 12));
  const Band band = Acquire(16);
  CHECK(band.record.bytes == 12);
  CHECK(band.Hex() == "00 01 02 A5 03 04 05 A5 06 07 08 A5 09 0A 0B A5");
}

TEST_CASE_FIXTURE(
    OpenB4, "standard: a band has the whole lines that fit, the last one those that are left") {
  StartScan(BlockHeader(0x20, 16, 4), 3);
  device.Reply(Rows({1, 2, 3, 4}));
  const Band first = Acquire(55);
  CHECK(first.record.lines == 3);
  CHECK(first.record.done == 0);
  CHECK(first.image == Rows({1, 2, 3}) + Fill(7, 0xA5));
  const Band second = Acquire(55);
  CHECK(second.record.lines == 1);
  CHECK(second.record.done == 1);
  CHECK(second.image == Rows({4}) + Fill(39, 0xA5));
}

TEST_CASE("standard: formats 1, 3, 5 and 6 come from the top, others from the bottom of a band") {
  for (const std::uint32_t format : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u, 8u}) {
    CAPTURE(format);
    StandardScanner scanner("B4");
    scanner.StartScan(BlockHeader(0x20, 16, 4), 255, format);
    scanner.device.Reply(Rows({1, 2, 3, 4}));
    const bool topDown = format == 1 || format == 3 || format == 5 || format == 6;
    CHECK(scanner.Acquire(48, 3).image == (topDown ? Rows({1, 2, 3}) : Rows({3, 2, 1})));
    CHECK(scanner.Acquire(16).image == Rows({4}));
  }
}

TEST_CASE_FIXTURE(OpenB4,
                  "standard: a buffer smaller than a line cancels the scan and writes nothing") {
  StartScan(BlockHeader(0x00, 16, 1), 1);
  device.Reply(Rows({1})).Expect({0x18}).Reply({0x06});
  const Band band = Acquire(15);
  CHECK(band.recordBytes == kUnwrittenBand);
  CHECK(band.image == Fill(15, 0xA5));
}

TEST_CASE_FIXTURE(OpenB4, "standard: a small buffer in the middle of a scan cancels it too") {
  DeliverFirstLine();
  device.Reply(BlockHeader(0x00, 16, 1)).Reply(Rows({2})).Expect({0x18}).Reply({0x06});
  CHECK(Acquire(15).record.status == kFailed);
  CHECK(Acquire(15).record.status == kFailed);  // nothing is under way any more
}

TEST_CASE_FIXTURE(OpenB4, "standard: 65536 lines that fit count as none") {
  settings.areaWidthPx = 1;
  StartWithoutUpload(BlockHeader(0x00, 8, 1));
  device.Reply(Fill(8, 1)).Expect({0x18}).Reply({0x06});
  CHECK(Acquire(262144).record.status == kFailed);
}

TEST_CASE_FIXTURE(
    OpenB4, "standard: progress is called on every tenth line of a call and with 100 at the end") {
  settings.areaHeightPx = 40;
  StartWithoutUpload(BlockHeader(0x20, 16, 40));
  device.Reply(Fill(640, 1));
  Acquire(240, 3);
  CHECK(progress == std::vector<std::uint32_t>{0, 25});
  Acquire(400);
  CHECK(progress == std::vector<std::uint32_t>{0, 25, 37, 62, 87, 100});
}

TEST_CASE_FIXTURE(OpenB4, "standard: without a progress routine none is called") {
  InitAcquire(1, nullptr);
  AcceptUpload(UploadOf("B4"));
  device.ExpectBlock(0x1B, 'd', {0x04});
  AnswerStart(BlockHeader(0x20, 16, 4));
  device.Reply(Ramp(0, 64));
  CHECK(Acquire(64).record.status == kGoOn);
  CHECK(progress.empty());
}

TEST_CASE_FIXTURE(
    OpenB4, "standard: what the progress routine changes in the settings counts from its line on") {
  settings.areaHeightPx = 13;
  StartWithoutUpload(BlockHeader(0x20, 16, 13));
  device.Reply(Fill(208, 0xFF));
  atPercent = 1;  // the second call, at line 10
  duringProgress = [this] { settings.previewMode = 1; };
  CHECK(Acquire(208).Rows(16) == "FF FF FF FF FF FF FF FF FF FF EA EA EA");
  CHECK(progress == std::vector<std::uint32_t>{0, 76, 100});
}

TEST_CASE_FIXTURE(
    OpenB4,
    "standard: what changes in the settings while a block is read counts from its lines on") {
  settings.areaHeightPx = 7;
  InitAcquire(1, nullptr);
  AcceptUpload(UploadOf("B4", "A 00 00 00 00 10 00 07 00"));
  device.ExpectBlock(0x1B, 'd', {0x07});
  AnswerStart(BlockHeader(0x00, 16, 4));
  SendLines(Fill(64, 0xFF));
  SendLastBlock(BlockHeader(0x20, 16, 3), Fill(48, 0xFF));
  device.duringReadOf = 48;
  device.duringRead = [this] { settings.previewMode = 1; };
  CHECK(Acquire(112).Rows(16) == "FF FF FF FF EA EA EA");
}

TEST_CASE_FIXTURE(OpenB4, "standard: a scan of 0 lines is started and done") {
  settings.areaHeightPx = 0;
  StartScanOf(Replaced(UploadOf("B4"), "04 00", "00 00"), BlockHeader(0x00, 16, 4), 0x04, 1);
  CHECK(Acquire(64).recordBytes == "01 00 00 00 A5 A5 A5 A5 01 00 00 00 00 00 00 00 00 00 00 00");
}

TEST_CASE_FIXTURE(OpenB4, "standard: a call behind the last line delivers none") {
  ScanPage();
  CHECK(Acquire(64).recordBytes == "01 00 00 00 A5 A5 A5 A5 01 00 00 00 00 00 00 00 00 00 00 00");
}

TEST_CASE("standard: line art is inverted where the settings ask for it") {
  CHECK(ScanLine(0, 32, {1, 2, 3, 4}) == Bytes{1, 2, 3, 4});
  StandardScanner scanner("B4");
  scanner.settings.invertMono = 1;
  CHECK(ScanLine(scanner, 0, 32, {1, 2, 3, 4}) == Bytes{0xFE, 0xFD, 0xFC, 0xFB});
}

TEST_CASE("standard: grey is copied, or darkened in preview mode") {
  CHECK(ScanLine(2, 4, {0, 11, 254, 255}) == Bytes{0, 11, 254, 255});
  StandardScanner scanner("B4");
  scanner.settings.previewMode = 1;
  CHECK(ScanLine(scanner, 2, 4, {0, 11, 254, 255}) == Bytes{0, 10, 231, 234});
}

TEST_CASE("standard: rows of pixel types 1 and 3 are not written") {
  for (const std::uint32_t type : {1u, 3u}) {
    CHECK(ScanLine(type, 8, Ramp(0, 8)) == Fill(4, 0xA5));
  }
}

TEST_CASE("standard: the palette's planes lie one after another, half a byte a pixel") {
  // 4 pixels: planes of 2 bytes; plane 2 leads in format 1, plane 0 in the others
  const Bytes raw{0x80, 0x0F, 0x00, 0xF0, 0xFF, 0x02};
  CHECK(ScanLine(4, 4, raw) == Bytes{183, 180, 30, 41});
  CHECK(ScanLine(4, 4, raw, 2) == Bytes{113, 5, 30, 181});
}

TEST_CASE_FIXTURE(OpenB4,
                  "standard: the palette's planes are as wide as the line that was sent for") {
  Set("pixelType=4 areaWidthPx=5 areaHeightPx=1");
  StartScanOf(UploadOf("B4", "C 02, D 03, A 00 00 00 00 08 00 01 00"), BlockHeader(0x20, 12, 1),
              0x01, 2);
  device.Reply(Fill(4, 0xFF) + Fill(4, 0x88) + Fill(4, 0x00));
  CHECK(Acquire(8).Hex() == "C6 C6 C6 C6 C6 A5 A5 A5");  // 36 * 5 + 6 * 3
}

TEST_CASE("standard: true colour is copied in format 1 and reversed in the others") {
  CHECK(ScanLine(5, 4, Ramp(1, 12)) == Ramp(1, 12));
  CHECK(ScanLine(5, 4, Ramp(1, 12), 3) == FromHex("03 02 01 06 05 04 09 08 07 0C 0B 0A"));
}

TEST_CASE("standard: 12-bit colour is unpacked to two bytes a pixel") {
  CHECK(ScanLine(6, 2, {0x12, 0x34, 0x56}) == Bytes{0x05, 0x31, 0x06, 0x42});
}

TEST_CASE("standard: deep colour is copied, reordered, or reduced in preview mode") {
  CHECK(ScanLine(7, 2, Ramp(1, 12)) == Ramp(1, 12));
  CHECK(ScanLine(7, 2, Ramp(1, 12), 2) == FromHex("05 06 03 04 01 02 0B 0C 09 0A 07 08"));
  StandardScanner scanner("B4");
  scanner.settings.previewMode = 1;
  CHECK(ScanLine(scanner, 7, 4, Ramp(1, 24), 2) == FromHex("06 04 02 0C 0A 08 12 10 0E 18 16 14"));
}

TEST_CASE("standard: deep grey is copied") {
  CHECK(ScanLine(8, 2, {1, 2, 3, 4}) == Bytes{1, 2, 3, 4});
}

TEST_CASE_FIXTURE(OpenB4, "standard: pixels that are not sent repeat the last one") {
  Set("areaLeftPx=992 areaHeightPx=1");
  StartScanOf(UploadOf("B4", "A E0 03 00 00 08 00 01 00"), BlockHeader(0x20, 8, 1), 0x01, 1);
  device.Reply(Ramp(1, 8));
  CHECK(Acquire(16).image == Ramp(1, 8) + Fill(8, 8));
}

TEST_CASE_FIXTURE(OpenFeederB4, "standard: at the end of a page on the feeder it is ejected") {
  settings.keepPaper = 1;  // counts only with the first feeder flag
  const Band band = ScanPageFrom(*this, 1, {0x06});
  CHECK(band.record.status == kGoOn);
  CHECK(band.image == Ramp(0, 64));
}

TEST_CASE_FIXTURE(OpenFeederB4, "standard: a failed eject is result 2, with the band delivered") {
  const Band band = ScanPageFrom(*this, 1, {kNak});
  CHECK(band.recordBytes == "02 00 00 00 A5 A5 A5 A5 01 00 00 00 04 00 00 00 40 00 00 00");
}

TEST_CASE("standard: a feeder with the first flag ejects unless the paper is to be kept") {
  StandardScanner scanner("B4", Status(0x20, 0x80));
  CHECK(ScanPageFrom(scanner, 1, {0x06}).record.status == kGoOn);
  CHECK(ScanPageFrom(scanner, 1, {kNak}).record.status == kFailed);
  scanner.settings.keepPaper = 1;
  CHECK(ScanPageFrom(scanner, 1, {}).record.status == kGoOn);
}

TEST_CASE("standard: nothing is ejected from flatbed and transparency unit") {
  for (const std::uint8_t source : Bytes{0, 1}) {
    StandardScanner scanner("B4", source == 0 ? Status(0, 0x80) : Status(0, 0, 0x80));
    CHECK(ScanPageFrom(scanner, source, {}).record.status == kGoOn);
  }
}

TEST_CASE_FIXTURE(OpenA5, "standard: level A5 ejects from the flatbed too") {
  StartScan(BlockHeader(0x20, 16, 4));
  device.Reply(Ramp(0, 64));
  ExpectEject();
  CHECK(Acquire(64).record.status == kGoOn);
}

TEST_CASE_FIXTURE(OpenA5, "standard: an aborted page is not ejected at its end") {
  DeliverFirstLine();
  SendLastBlock(BlockHeader(0x20, 16, 1), Fill(16, 2));
  PMAbortScan();
  CHECK(Acquire(48).record.done == 1);
}

TEST_CASE_FIXTURE(OpenB4, "standard: two pages in a row are two scans") {
  CHECK(ScanPage().record.status == kGoOn);
  CHECK(ScanPage().record.status == kGoOn);
  CHECK(progress == std::vector<std::uint32_t>{0, 100, 0, 100});
}

}  // namespace
}  // namespace pmddb832::tests::standard
