#include "standard/line_size.h"
#include "tests/standard/standard_fixture.h"

// PMInitAcquire: line sizes, the record, and lines that are refused.

namespace pmddb832::tests::standard {
namespace {

// The record of a setup: status, line bytes, width and height; the rest is not written.
std::string Setup(std::uint8_t status, std::uint32_t lineBytes, std::uint32_t width) {
  const Bytes unwritten = Fill(4, 0xA5);
  return Hex(Bytes{status, 0, 0, 0} + unwritten + Short(lineBytes) + Short(lineBytes >> 16) +
             unwritten + Short(width) + Short(width >> 16) + Bytes{4, 0, 0, 0});
}

struct Line {
  std::uint32_t pixelType;
  std::uint32_t width;
  std::uint32_t lineBytes;
  std::uint32_t outputFormat = 2;
};

void CheckSetup(StandardScanner& scanner, const Line& line, std::uint8_t status = 1,
                std::uint32_t code = 0) {
  CAPTURE(line.pixelType);
  CAPTURE(line.width);
  scanner.settings.pixelType = line.pixelType;
  scanner.settings.areaWidthPx = line.width;
  CHECK(scanner.InitAcquire(line.outputFormat) == Setup(status, line.lineBytes, line.width));
  CHECK(PMGetScanError() == code);
}

TEST_CASE_FIXTURE(OpenB4, "standard: each pixel type has its line size, aligned to 4 bytes") {
  for (const Line& line :
       {Line{0, 1, 4}, Line{0, 32, 4}, Line{0, 33, 8}, Line{1, 9, 8}, Line{2, 5, 8}, Line{3, 3, 4},
        Line{4, 6, 8}, Line{5, 3, 12}, Line{6, 3, 8}, Line{7, 3, 20}, Line{8, 3, 8}}) {
    CheckSetup(*this, line);
  }
}

TEST_CASE_FIXTURE(OpenB4, "standard: in preview mode the deep types have lines of 8-bit samples") {
  settings.previewMode = 1;
  CheckSetup(*this, {7, 5, 16});
  CheckSetup(*this, {8, 5, 8});
  CheckSetup(*this, {2, 5, 8});
}

TEST_CASE_FIXTURE(OpenB4,
                  "standard: in output format 1 lines of two pixels a byte are not aligned") {
  CheckSetup(*this, {1, 3, 2, 1});
  CheckSetup(*this, {1, 3, 4, 2});
  CheckSetup(*this, {3, 9, 5, 1});
  CheckSetup(*this, {0, 9, 4, 1});
  CheckSetup(*this, {5, 1, 4, 1});
}

TEST_CASE_FIXTURE(OpenB4, "standard: an unlisted pixel type keeps the type before it") {
  CheckSetup(*this, {5, 4, 12});
  CheckSetup(*this, {9, 4, 12});
  CheckSetup(*this, {0xFFFFFFFF, 4, 12});
}

TEST_CASE_FIXTURE(
    OpenB4, "standard: an unlisted pixel type before any other has lines of one byte a pixel") {
  CheckSetup(*this, {9, 5, 8});
}

TEST_CASE_FIXTURE(OpenB4,
                  "standard: a line of 0 bytes is refused with code 1 and an untouched record") {
  settings.areaWidthPx = 0;
  CHECK(InitAcquire() == Hex(Fill(24, 0xA5)));
  CHECK(PMGetScanError() == 1);
}

TEST_CASE_FIXTURE(OpenB4, "standard: a line size that wraps to 0 is refused with code 1") {
  settings.areaWidthPx = 0xFFFFFFFF;
  CHECK(InitAcquire() == Hex(Fill(24, 0xA5)));
  CHECK(PMGetScanError() == 1);
}

TEST_CASE_FIXTURE(OpenB4, "standard: a line and its overhead may have 64270 bytes") {
  CheckSetup(*this, {5, 21402, 64208});
  CheckSetup(*this, {5, 21403, 64212}, 2, 16);
  CheckSetup(*this, {2, 64240, 64240});
  CheckSetup(*this, {2, 64241, 64244}, 2, 16);
  CheckSetup(*this, {4, 64208, 64208});
  CheckSetup(*this, {4, 64209, 64212}, 2, 16);
}

TEST_CASE_FIXTURE(OpenB4, "standard: a line of 12-bit colour may have 32768 bytes") {
  CheckSetup(*this, {6, 16384, 32768});
  CheckSetup(*this, {6, 16385, 32772}, 2, 16);
}

TEST_CASE("standard: a line whose sum with the overhead wraps does not fit") {
  const PixelFormat colour{3, 2, 1, 1};
  CHECK_FALSE(FitsOneTransfer(0xFFFFFFC4, kPalette, colour));
  CHECK_FALSE(FitsOneTransfer(0xFFFFFFFC, kPalette, colour));
}

TEST_CASE("standard: the room of a raw line is a multiple of 8 storage units") {
  CHECK(RawLineRoom(217, {1, 0, 8, 1}) == 32);   // 28 units
  CHECK(RawLineRoom(64, {1, 0, 8, 1}) == 8);     // 8 units
  CHECK(RawLineRoom(9, {8, 0x13, 1, 3}) == 48);  // 9 units
  CHECK(RawLineRoom(0, {8, 0, 1, 1}) == 0);
}

TEST_CASE_FIXTURE(OpenB4, "standard: PMInitAcquire clears the code before it and sends nothing") {
  settings.areaWidthPx = 0;
  InitAcquire();
  settings.areaWidthPx = 16;
  CHECK(InitAcquire() == Setup(1, 16, 16));
  CHECK(PMGetScanError() == 0);
}

}  // namespace
}  // namespace pmddb832::tests::standard
