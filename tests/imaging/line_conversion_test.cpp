#include "imaging/line_conversion.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <span>

#include "imaging/band.h"
#include "interface/scanner_settings.h"
#include "tests/imaging/pixel_oracle.h"

namespace pmddb832::tests {
namespace {

// A plan with a pad of one pixel, and the settings that its lines are converted by.
struct LineFixture {
  std::string Row(std::uint32_t pixelType, const Bytes& line, std::int32_t pixels,
                  std::size_t rowBytes) {
    plan.pixelType = pixelType;
    Routine routine{};
    routine.convert = [this](const ScanLine& scanLine, HostRow row, std::int16_t, bool) {
      ConvertLines(scanLine, row, ConversionFor(plan, settings));
    };
    return routine.Row(line, pixels, rowBytes, 0);
  }

  ScannerSettings settings{};
  ScanPlan plan{.padPixels = 1};
};

// Five lines of seven bytes, of which the last ones may be missing.
struct FiveLines {
  static constexpr std::uint32_t kCount = 5;
  static constexpr std::uint32_t kLineBytes = 7;
  static constexpr std::size_t kRowBytes = 9;

  FiveLines(std::size_t bytesReceived, std::int32_t pixels) {
    for (std::size_t i = 0; i < bytesReceived; ++i) {
      received.push_back(static_cast<std::uint8_t>(17 * i + 3));
    }
    lines.first = LineAt(0, pixels);
    lines.count = kCount;
    lines.lineBytes = kLineBytes;
  }

  ScanLine LineAt(std::size_t line, std::int32_t pixels) const {
    const auto from = [&](std::size_t offset) {
      return std::span(received).subspan(std::min(offset, received.size()));
    };
    const std::size_t start = line * kLineBytes;
    return {pixels, from(start), from(start + 2), from(start + 4)};
  }

  // All of them at once, and one by one, from the top or from the bottom.
  Bytes Together(const LineConversion& conversion, bool topDown) const {
    Bytes image(kCount * kRowBytes, kUntouched);
    const Band band{image, kRowBytes, kCount, topDown};
    ConvertLines(lines, band.RowsFrom(0), conversion);
    return image;
  }
  Bytes Apart(const LineConversion& conversion, bool topDown) const {
    Bytes image(kCount * kRowBytes, kUntouched);
    for (std::size_t line = 0; line < kCount; ++line) {
      const std::size_t row = topDown ? line : kCount - 1 - line;
      ConvertLines(LineAt(line, lines.first.pixelCount),
                   HostRow(image).subspan(row * kRowBytes, kRowBytes), conversion);
    }
    return image;
  }

  Bytes received;
  ScanLines lines;
};

}  // namespace

TEST_CASE("lines that are converted together are those that are converted one by one") {
  for (std::uint32_t variant = 0; variant < 9 * 16; ++variant) {
    const bool flag = (variant & 1) != 0;
    for (std::int16_t pad = -2; pad <= 3; ++pad) {
      const LineConversion conversion{
          variant / 16,      pad, flag, flag, (variant & 2) != 0, (variant & 4) != 0,
          (variant & 8) != 0};
      for (std::size_t bytes = 0; bytes <= 40; ++bytes) {
        CAPTURE(variant);
        CAPTURE(pad);
        CAPTURE(bytes);
        const FiveLines five(bytes, 1 + static_cast<std::int32_t>(bytes % 5));
        CHECK(five.Together(conversion, flag) == five.Apart(conversion, flag));
      }
    }
  }
}

TEST_CASE("lines that are converted together go from the top or from the bottom") {
  const LineConversion swapped{kTrueColour, 0, true, false, false, false, false};
  const FiveLines five(35, 2);
  const auto rows = [&](bool topDown) {
    const Bytes image = five.Together(swapped, topDown);
    return Hex(Bytes(image.begin(), image.begin() + 18));
  };
  CHECK(rows(true) == "25 14 03 58 47 36 C3 C3 C3 9C 8B 7A CF BE AD C3 C3 C3");
  CHECK(rows(false) == "01 F0 DF 34 23 12 C3 C3 C3 8A 79 68 BD AC 9B C3 C3 C3");
}

TEST_CASE("of the lines at hand those count that lie whole in what is there") {
  CHECK(WholeLines(21, 7, 5) == 3);
  CHECK(WholeLines(20, 7, 5) == 2);
  CHECK(WholeLines(70, 7, 5) == 5);
  CHECK(WholeLines(6, 7, 5) == 1);
  CHECK(WholeLines(0, 7, 5) == 1);
  CHECK(WholeLines(70, 0, 5) == 1);
  CHECK(WholeLines(70, 7, 1) == 1);
  CHECK(WholeLines(70, 7, 0) == 1);
}

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
  plan.reorder = true;
  settings.mirrorImage = 1;
  settings.previewMode = 1;
  CHECK(Row(6, {0x12, 0x34, 0x56}, 2, 4) == "05 31 05 31");
}

TEST_CASE_FIXTURE(LineFixture, "deep colour is reordered on request and reduced in preview mode") {
  plan.padPixels = 0;
  settings.mirrorImage = 1;
  const Bytes pixel{0x01, 0x02, 0x03, 0x04, 0x05, 0x06};
  CHECK(Row(7, pixel, 1, 6) == "01 02 03 04 05 06");
  plan.reorder = true;
  CHECK(Row(7, pixel, 1, 6) == "05 06 03 04 01 02");
  settings.previewMode = 0x100;
  CHECK(Row(7, pixel, 1, 3) == "06 04 02");
  plan.reorder = false;
  CHECK(Row(7, pixel, 1, 3) == "02 04 06");
}

TEST_CASE_FIXTURE(LineFixture,
                  "deep grey keeps 16 bits in preview mode and is trimmed when mirrored") {
  settings.previewMode = 1;
  CHECK(Row(8, {0x01, 0x02, 0x03, 0x04, 0x05}, 2, 5) == "01 02 01 02 C3");
  settings.mirrorImage = 1;
  CHECK(Row(8, {0x01, 0x02, 0x03, 0x04, 0x05}, 2, 5) == "02 03 04 05 C3");
}

TEST_CASE_FIXTURE(LineFixture, "colours are reordered on request, palette and true colour") {
  plan.padPixels = 0;
  CHECK(Row(4, {0x12}, 2, 3) == "A8 73 C3");  // planes of 0x12, 0xB3 and 0xD9
  CHECK(Row(5, {1, 2, 3, 4, 5, 6}, 2, 7) == "01 02 03 04 05 06 C3");
  plan.reorder = true;
  CHECK(Row(4, {0x12}, 2, 3) == "1C 2D C3");
  CHECK(Row(5, {1, 2, 3, 4, 5, 6}, 2, 7) == "03 02 01 06 05 04 C3");
}

TEST_CASE_FIXTURE(LineFixture, "other pixel types write nothing") {
  for (const std::uint32_t type : {1U, 3U, 9U, 0xFFFFFFFFU}) {
    CHECK(Row(type, {1, 2, 3, 4, 5, 6}, 2, 3) == "C3 C3 C3");
  }
}

TEST_CASE_FIXTURE(LineFixture, "the fill is white when all three settings say so") {
  for (int cases = 0; cases < 8; ++cases) {
    CAPTURE(cases);
    settings.docFeedOption = (cases & 1) != 0 ? 0 : 2;
    settings.mainStatusBit5 = static_cast<std::uint8_t>((cases & 2) * 0x40);
    settings.whitePadding = static_cast<std::uint16_t>((cases & 4) * 0x2000);
    CHECK(ConversionFor(plan, settings).whiteFill == (cases == 7));
    const std::string last = cases == 7 ? "FF" : "34";
    CHECK(Row(0, {0x12, 0x34}, 2, 3) == "12 34 " + last);
  }
  settings.docFeedOption = 1;
  CHECK(Row(0, {0x12, 0x34}, 2, 3) == "12 34 34");
}

TEST_CASE_FIXTURE(LineFixture, "a white fill is white for every type that has a fill") {
  settings.mainStatusBit5 = 1;
  settings.whitePadding = 1;
  CHECK(Row(2, {22, 33, 44}, 2, 3) == "16 FF C3");
  CHECK(Row(4, {0x12}, 2, 2) == "A8 FF");
  CHECK(Row(5, {1, 2, 3, 4, 5, 6}, 2, 6) == "01 02 03 FF FF FF");
  CHECK(Row(6, {0x12, 0x34, 0x56}, 2, 4) == "05 31 FF FF");
  CHECK(Row(7, {1, 2, 3, 4, 5, 6}, 2, 12) == "01 02 03 04 05 06 FF FF FF FF FF FF");
  CHECK(Row(8, {1, 2, 3, 4}, 2, 4) == "01 02 FF FF");
  settings.previewMode = 1;
  CHECK(Row(2, {22, 33, 44}, 2, 3) == "14 FF C3");
}

TEST_CASE("rows are delivered from the top for the formats 1, 3, 5 and 6") {
  for (std::uint32_t format = 0; format < 10; ++format) {
    CAPTURE(format);
    CHECK(IsTopDown(format) == (format == 1 || format == 3 || format == 5 || format == 6));
  }
  CHECK_FALSE(IsTopDown(0x80000001));
}

TEST_CASE("a percentage counts whole lines, and is 100 of an image without lines") {
  CHECK(PercentDone(0, 3) == 0);
  CHECK(PercentDone(2, 3) == 66);
  CHECK(PercentDone(3, 3) == 100);
  CHECK(PercentDone(7, 0) == 100);
}

}  // namespace pmddb832::tests
