#include "tests/extended/extended_fixture.h"

namespace pmddb832::tests::extended {
namespace {

TEST_CASE("a block that does not fit the data buffer with its status byte is not read") {
  for (const std::uint32_t size : {65280u, 65281u, 0x7FFFFFFFu, 0xFFFFFFFEu, 0xFFFFFFFFu}) {
    for (const bool last : {false, true}) {
      CAPTURE(size);
      CAPTURE(last);
      OpenExtended scanner;
      scanner.StartScan(ParameterBlock(), last ? Header(0, 0, size) : Header(size, 1, 64));
      const Band band = scanner.Acquire(64);
      CHECK(band.record.status == kFailed);
      CHECK(PMGetScanError() == 9);
      CHECK(band.image == Fill(64, 0xA5));
    }
  }
}

TEST_CASE_FIXTURE(OpenExtended, "the largest block that fits is read") {
  StartScan(ParameterBlock(), Header(65279, 1, 0));
  SendBlock(Fill(65279, 1));
  CHECK(Acquire(64).Rows(16) == "01 01 01 01");
}

TEST_CASE_FIXTURE(OpenExtended, "an abort does not read a block that does not fit either") {
  StartScan(ParameterBlock(), Header(0xFFFFFFFF, 1, 64));
  Acquire(64);
  PMAbortScan();
  CHECK(PMGetScanError() == 9);
}

TEST_CASE_FIXTURE(ExtendedScanner, "an identity without a basic resolution fails the open with 7") {
  AnswerProbe();
  AnswerReset();
  AnswerIdentity(With(Identity(), 4, Word(0)));
  CHECK(PMOpenScanner(&settings) == 0);
  CHECK(PMGetScanError() == 7);
  CHECK(settings.scanInfoVariant == 0);
}

TEST_CASE_FIXTURE(OpenExtended,
                  "a paper size without a basic resolution is 7; scans go on as before") {
  AnswerIdentity(Fill(80, 0));
  std::uint32_t width = kUnwritten;
  std::uint32_t height = kUnwritten;
  CHECK(PMGetScanPaperSize(2, &width, &height) == 7);
  CHECK(width == kUnwritten);
  CHECK(height == kUnwritten);
  CHECK(ScanPage().record.done == 1);
}

TEST_CASE_FIXTURE(OpenExtended,
                  "a paper size without a basic resolution leaves the last error as it was") {
  PMAbortScan();
  AnswerIdentity(Fill(80, 0));
  std::uint32_t width = kUnwritten;
  std::uint32_t height = kUnwritten;
  CHECK(PMGetScanPaperSize(2, &width, &height) == 7);
  CHECK(PMGetScanError() == 9);
}

TEST_CASE_FIXTURE(OpenExtended, "blocks without data give white rows, one block for its lines") {
  const Bytes parameters = AskForWideLines(10);
  StartScan(parameters, Header(0, 0xFFFFFFFF, 0));
  for (int block = 0; block < 3; ++block) SendBlock({});
  const Band band = Acquire(10 * 16000);
  CHECK(band.record.done == 1);
  CHECK(band.Rows(16000) == "FF FF FF FF FF FF FF FF FF FF");
}

TEST_CASE_FIXTURE(OpenExtended, "a last block with fewer lines than announced ends in white") {
  StartScan(ParameterBlock(), Header(0, 0, 20), 1);
  SendLastBlock(Ramp(1, 20));
  const Bytes lines = Ramp(1, 20) + Fill(12, 0xFF) + Fill(32, 0xFF);
  CHECK(Acquire(64).image == lines);
}

TEST_CASE_FIXTURE(OpenExtended, "a full block with fewer lines than announced ends in white") {
  const Bytes parameters = AskForWideLines(8);
  StartScan(parameters, Header(40000, 1, 64000), 1);
  SendBlock(Fill(40000, 1));
  SendLastBlock(Fill(64000, 2));
  const Band band = Acquire(8 * 16000);
  CHECK(band.Rows(8000) == "01 01 01 01 01 FF FF FF 02 02 02 02 02 02 02 02");
}

TEST_CASE_FIXTURE(OpenExtended, "what an earlier, longer block left is not delivered") {
  StartScan(ParameterBlock(), Header(0, 0, 64));
  SendLastBlock(Fill(64, 0x77));
  Acquire(64);
  StartScan(ParameterBlock(), Header(0, 0, 16));
  SendLastBlock(Fill(16, 1));
  CHECK(Acquire(64).Rows(16) == "FF FF FF 01");
}

TEST_CASE_FIXTURE(OpenExtended,
                  "deep grey in preview fills a buffer of exactly the announced size") {
  Set("pixelType=8 previewMode=1");
  StartScan(With(ParameterBlock(), 25, {0x0C}), Header(0, 0, 64), 1);
  SendLastBlock(Ramp(0, 64));
  const Band band = Acquire(64);
  CHECK(band.record.bytes == 64);
  CHECK(band.image == Ramp(0, 64));
}

TEST_CASE_FIXTURE(OpenExtended, "deep grey in preview takes whole samples of what was received") {
  Set("pixelType=8 previewMode=1 areaWidthPx=5 areaHeightPx=2");
  StartScan(With(With(ParameterBlock(), 16, Word(5) + Word(2)), 25, {0x0C}), Header(0, 0, 10), 1);
  SendLastBlock(Ramp(0, 10));
  CHECK(Acquire(16).Hex() == "00 01 02 03 04 05 06 07 05 06 07 08 FF FF FF FF");
}

TEST_CASE_FIXTURE(ExtendedScanner, "deep colour in preview, 8160 wide, reads what was received") {
  REQUIRE(Open(With(Identity(), 20, Word(8160))) == 1);
  Set("pixelType=7 previewMode=1 areaWidthPx=8160 areaHeightPx=2");
  const Bytes block = With(ParameterBlock(), 16, Word(8160) + Word(2) + FromHex("13 0C 00 00 02"));
  StartScan(block, Header(0, 0, 48960), 1);
  SendLastBlock(Fill(24480, 0x11) + Fill(24480, 0x22));
  CHECK(Acquire(48960).Rows(12240) == "11 22 22 FF");
}

TEST_CASE_FIXTURE(OpenExtended, "one channel received for a colour type ends in white") {
  Set("pixelType=5 monoScan=1 dropoutChannel=1");
  StartScan(With(ParameterBlock(), 24, {0x10}), Header(0, 0, 64), 1);
  SendLastBlock(Ramp(0, 64));
  const Bytes rows = Ramp(0, 48) + Ramp(48, 15) + Fill(33, 0xFF) + Fill(96, 0xFF);
  CHECK(Acquire(192).image == rows);
}

// A mirrored scan of one line of line art.
struct MirroredLine {
  std::uint32_t left, width;
  std::uint32_t sentLeft, sentWidth;
  std::size_t rowBytes, pixelBytes, filledBytes;
};

TEST_CASE("mirrored line art of any width stays in its row, its pad rounded up to bytes") {
  for (const MirroredLine& line :
       {MirroredLine{0, 33, 1, 32, 8, 4, 1}, MirroredLine{7, 33, 0, 40, 8, 5, 0},
        MirroredLine{0, 217, 1, 216, 28, 27, 1}, MirroredLine{7, 217, 0, 224, 28, 28, 0},
        MirroredLine{8, 217, 1, 224, 28, 28, 0}, MirroredLine{0, 223, 7, 216, 28, 27, 1},
        MirroredLine{0, 8, 0, 8, 4, 1, 0}, MirroredLine{990, 100, 984, 16, 16, 2, 0}}) {
    CAPTURE(line.left);
    CAPTURE(line.width);
    OpenExtended scanner;
    scanner.Set("pixelType=0 mirrorImage=1");
    scanner.settings.originX = line.left;
    scanner.settings.areaWidthPx = line.width;
    scanner.settings.areaHeightPx = 1;
    const Bytes area = Word(line.sentLeft) + Word(0) + Word(line.sentWidth) + Word(1);
    const Bytes block = With(With(ParameterBlock(), 8, area + Bytes{0x00, 0x01}), 36, {0x01});
    scanner.StartScan(block, Header(0, 0, line.sentWidth / 8), 0);
    scanner.SendLastBlock(Ramp(1, line.sentWidth / 8));
    const Bytes row = Ramp(1, line.pixelBytes) +
                      Fill(line.filledBytes, static_cast<std::uint8_t>(line.pixelBytes));
    CHECK(scanner.Acquire(line.rowBytes).image == row + Fill(line.rowBytes - row.size(), 0xA5));
  }
}

// A scan of three lines into a buffer of exactly the announced size, of which the scanner sends
// `received` bytes.
void ScanExactly(ExtendedScanner& scanner, std::uint32_t received) {
  scanner.InitAcquire(scanner.settings.pixelType);
  scanner.device.Expect({0x1C, 0x57}).Reply({0x06}).ExpectAny(64).Reply({0x06});
  scanner.AnswerStart(Header(0, 0, received));
  scanner.SendLastBlock(Fill(received, 0x5A));
  const Band band = scanner.Acquire(std::size_t{scanner.setup.lineBytes} * 3);
  CHECK(band.record.done == 1);
  CHECK(band.record.bytes == scanner.setup.lineBytes * 3);
}

TEST_CASE("rows of every type and width, wherever the area cuts them, stay in an exact buffer") {
  ExtendedScanner scanner;
  REQUIRE(scanner.Open(With(Identity(), 46, Text("Prospectra3140XL"))) == 1);
  scanner.settings.areaHeightPx = 3;
  for (const std::uint32_t pixelType : {0u, 2u, 5u, 6u, 7u, 8u}) {
    for (const std::uint32_t flags : {0u, 1u, 2u, 3u}) {
      scanner.settings.pixelType = pixelType;
      scanner.settings.mirrorImage = flags & 1;
      scanner.settings.previewMode = flags & 2;
      for (std::uint32_t width = 9; width <= 80; ++width) {
        for (const double left : {0.0, 1.0, 7.0, 980.0}) {
          scanner.settings.areaWidthPx = width;
          scanner.settings.originX = left;
          ScanExactly(scanner, 2000);
          ScanExactly(scanner, width);
        }
      }
    }
  }
}

TEST_CASE_FIXTURE(ExtendedScanner,
                  "a mirrored line cut at the edge reads no more than was received") {
  REQUIRE(Open(With(Identity(), 46, Text("Prospectra3140XL"))) == 1);
  Set("pixelType=8 mirrorImage=1");
  settings.areaWidthPx = 17;  // 16 are sent, and the first byte is skipped
  settings.areaHeightPx = 1;
  const Bytes area = Word(1) + Word(0) + Word(16) + Word(1) + Bytes{0x00, 0x0E};
  StartScan(With(With(ParameterBlock(), 8, area), 36, {0x01}), Header(0, 0, 32), 8);
  SendLastBlock(Ramp(0, 32));
  CHECK(Acquire(36).image == Ramp(1, 30) + Fill(6, 0xFF));
}

TEST_CASE_FIXTURE(ExtendedScanner,
                  "a trimmed white line below the area goes on with what was received behind it") {
  REQUIRE(Open(With(Identity(), 46, Text("Prospectra3140XL"))) == 1);
  Set("pixelType=8 mirrorImage=1 originY=1399");
  settings.areaWidthPx = 17;  // 16 are sent, and the first byte is skipped
  settings.areaHeightPx = 2;  // of the second line nothing is sent
  const Bytes area = Word(1) + Word(1399) + Word(16) + Word(1) + Bytes{0x00, 0x0E};
  StartScan(With(With(ParameterBlock(), 8, area), 36, {0x01}), Header(0, 0, 80), 8);
  SendLastBlock(Ramp(0, 80));
  const Bytes filler = Fill(2, 0xA5);
  const Bytes white = Fill(31, 0xFF) + Ramp(64, 3);
  CHECK(Acquire(72).image == white + filler + Ramp(1, 34) + filler);  // from the bottom up
}

}  // namespace
}  // namespace pmddb832::tests::extended
