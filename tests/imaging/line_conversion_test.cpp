#include "imaging/line_conversion.h"

#include <doctest/doctest.h>

#include "tests/imaging/pixel_oracle.h"

namespace pmddb832::tests {
namespace {

struct LineFixture : ModuleFixture {
  std::string Row(std::uint32_t pixelType, const Bytes& line, std::int32_t pixels,
                  std::size_t rowBytes) const {
    return Hex(Converted(line, pixels, rowBytes, [&](const ScanLine& scanLine, HostRow row) {
      ConvertLine(pixelType, scanLine, row, conversion);
    }));
  }

  LineConversion conversion{false, 1};
};

}  // namespace

TEST_CASE_FIXTURE(LineFixture, "line art is inverted when the settings say so") {
  CHECK(Row(0, {0x12, 0x34}, 2, 4) == "12 34 34 C3");
  settings.invertMono = 0x80;
  CHECK(Row(0, {0x12, 0x34}, 2, 4) == "ED CB 34 C3");
}

TEST_CASE_FIXTURE(LineFixture, "grey is trimmed when mirrored, whatever the value") {
  CHECK(Row(2, {22, 33, 44}, 2, 3) == "16 16 C3");
  settings.mirrorImage = 0x80000000;
  CHECK(Row(2, {22, 33, 44}, 2, 3) == "21 2C C3");
}

TEST_CASE_FIXTURE(LineFixture, "grey in preview mode is darkened, and never trimmed") {
  settings.previewMode = 2;
  settings.mirrorImage = 1;
  CHECK(Row(2, {22, 33, 44}, 2, 3) == "14 14 C3");
}

TEST_CASE_FIXTURE(LineFixture, "12-bit colour is unpacked, whatever the flags") {
  CHECK(Row(6, {0x12, 0x34, 0x56}, 2, 4) == "05 31 05 31");
  conversion.convert = true;
  settings.mirrorImage = 1;
  settings.previewMode = 1;
  CHECK(Row(6, {0x12, 0x34, 0x56}, 2, 4) == "05 31 05 31");
}

TEST_CASE_FIXTURE(LineFixture, "deep colour is reordered on request and reduced in preview mode") {
  conversion.pad = 0;
  settings.mirrorImage = 1;
  const Bytes pixel{0x01, 0x02, 0x03, 0x04, 0x05, 0x06};
  CHECK(Row(7, pixel, 1, 6) == "01 02 03 04 05 06");
  conversion.convert = true;
  CHECK(Row(7, pixel, 1, 6) == "05 06 03 04 01 02");
  settings.previewMode = 0x100;
  CHECK(Row(7, pixel, 1, 3) == "06 04 02");
  conversion.convert = false;
  CHECK(Row(7, pixel, 1, 3) == "02 04 06");
}

TEST_CASE_FIXTURE(LineFixture,
                  "deep grey keeps 16 bits in preview mode and is trimmed when mirrored") {
  settings.previewMode = 1;
  CHECK(Row(8, {0x01, 0x02, 0x03, 0x04, 0x05}, 2, 5) == "01 02 01 02 C3");
  settings.mirrorImage = 1;
  CHECK(Row(8, {0x01, 0x02, 0x03, 0x04, 0x05}, 2, 5) == "02 03 04 05 C3");
}

TEST_CASE_FIXTURE(LineFixture, "other pixel types write nothing") {
  for (const std::uint32_t type : {1U, 3U, 4U, 5U, 9U, 0xFFFFFFFFU}) {
    CHECK(Row(type, {1, 2, 3, 4, 5, 6}, 2, 3) == "C3 C3 C3");
  }
}

TEST_CASE("rows are delivered from the top for the formats 1, 3, 5 and 6") {
  for (std::uint32_t format = 0; format < 10; ++format) {
    CAPTURE(format);
    CHECK(IsTopDown(format) == (format == 1 || format == 3 || format == 5 || format == 6));
  }
  CHECK_FALSE(IsTopDown(0x80000001));
}

}  // namespace pmddb832::tests
