#include <doctest/doctest.h>

#include <functional>
#include <span>
#include <vector>

#include "imaging/band.h"
#include "imaging/line_conversion.h"
#include "imaging/pixel_format.h"
#include "tests/imaging/pixel_oracle.h"

// Lines that are converted together, and what stands in the host's rows.

namespace pmddb832::tests {
namespace {

constexpr std::uint32_t kLines = 3;

// Three lines, one behind the other.
struct Run {
  Bytes received;
  std::int32_t pixels;
  std::size_t planeBytes = 0;  // from one colour plane of a line to the next

  std::size_t LineBytes() const { return received.size() / kLines; }

  Bytes Converted(const LineConversion& conversion, std::uint32_t rowBytes, bool topDown) const {
    const std::span<const std::uint8_t> bytes(received);
    ScanLines lines(
        ScanLine{pixels, bytes, bytes.subspan(planeBytes), bytes.subspan(2 * planeBytes)});
    lines.count = kLines;
    lines.lineBytes = static_cast<std::uint32_t>(LineBytes());
    Bytes image(std::size_t{kLines} * rowBytes, kUntouched);
    ConvertLines(lines, Band{image, rowBytes, kLines, topDown}.RowsFrom(0), conversion);
    return image;
  }
  std::string Rows(const LineConversion& conversion, std::uint32_t rowBytes, bool topDown) const {
    return Hex(Converted(conversion, rowBytes, topDown));
  }
};

LineConversion Plain(std::uint32_t pixelType) {
  LineConversion conversion{};
  conversion.pixelType = pixelType;
  return conversion;
}

// A type's wide lines: how long they are, and what a naive loop makes of a pixel.
struct WideType {
  LineConversion conversion;
  std::size_t lineBytes;
  std::size_t planeBytes;
  std::function<Bytes(const std::uint8_t* line, std::size_t pixel)> pixel;
};

constexpr std::size_t kWidth = 211;
constexpr std::size_t kWidePlane = 106;

Bytes PreviewGrey(const std::uint8_t* line, std::size_t pixel) {
  const int grey = line[pixel];
  return {static_cast<std::uint8_t>(grey == 255 ? 234 : grey - grey / 11)};
}

// The last plane leads.
Bytes Palette(const std::uint8_t* line, std::size_t pixel) {
  constexpr int kLevels[] = {0, 1, 1, 2, 3, 4, 4, 5};
  const auto level = [&](std::size_t plane) {
    const std::uint8_t byte = line[plane * kWidePlane + pixel / 2];
    return kLevels[(pixel % 2 == 0 ? byte / 16 : byte % 16) / 2];
  };
  return {static_cast<std::uint8_t>(36 * level(2) + 6 * level(1) + level(0))};
}

Bytes SwappedColour(const std::uint8_t* line, std::size_t pixel) {
  const std::uint8_t* const from = line + 3 * pixel;
  return {from[2], from[1], from[0]};
}

Bytes ReducedColour(const std::uint8_t* line, std::size_t pixel) {
  const std::uint8_t* const from = line + 6 * pixel;
  return {from[1], from[3], from[5]};
}

std::vector<WideType> WideTypes() {
  std::vector<WideType> types{{Plain(kGrey), kWidth, 0, PreviewGrey},
                              {Plain(kPalette), 3 * kWidePlane + 1, kWidePlane, Palette},
                              {Plain(kTrueColour), 3 * kWidth + 2, 0, SwappedColour},
                              {Plain(kDeepColour), 6 * kWidth + 1, 0, ReducedColour}};
  types[0].conversion.preview = true;
  types[2].conversion.reorder = true;
  types[3].conversion.preview = true;
  return types;
}

// Three lines without a pattern.
Bytes Noise(std::size_t lineBytes) {
  Bytes bytes(kLines * lineBytes);
  std::uint32_t state = 2463534242;
  for (std::uint8_t& byte : bytes) {
    state = state * 1664525 + 1013904223;
    byte = static_cast<std::uint8_t>(state >> 24);
  }
  return bytes;
}

Bytes WideRows(const WideType& type, const Bytes& received, bool topDown) {
  Bytes rows;
  for (std::size_t row = 0; row < kLines; ++row) {
    const std::size_t line = topDown ? row : kLines - 1 - row;
    for (std::size_t pixel = 0; pixel < kWidth; ++pixel) {
      rows = rows + type.pixel(received.data() + line * type.lineBytes, pixel);
    }
    rows.push_back(kUntouched);
  }
  return rows;
}

}  // namespace

TEST_CASE("a run of palette lines takes each line's own three planes") {
  // Three pixels: planes of two bytes, and a seventh byte that is nobody's.
  const Run run{FromHex("80 F0 0F 00 02 40 EE"
                        "1A 60 C3 80 E5 20 EE"
                        "FF F0 00 70 9D 00 EE"),
                3, 2};
  LineConversion palette = Plain(kPalette);
  CHECK(run.Rows(palette, 4, true) == "03 42 29 C3 CC 2E 38 C3 71 95 11 C3");
  palette.reorder = true;
  CHECK(run.Rows(palette, 4, false) == "B7 B8 C0 C3 1D 97 5B C3 6C 1F B5 C3");
  palette.pad = 1;
  CHECK(run.Rows(palette, 4, true) == "6C 1F 1F C3 1D 97 97 C3 B7 B8 B8 C3");
}

TEST_CASE("a run of trimmed deep grey skips an odd pad in each line, and reads into the next one") {
  const Run run{FromHex("01 02 03 04 05 06 07"
                        "08 09 0A 0B 0C 0D 0E"
                        "0F 10 11 12 13 14 15"),
                3};
  LineConversion trimmed = Plain(kDeepGrey);
  trimmed.mirror = true;
  trimmed.pad = 1;
  CHECK(run.Rows(trimmed, 7, false) ==
        "10 11 12 13 14 15 C3 09 0A 0B 0C 0D 0E C3 02 03 04 05 06 07 C3");
  trimmed.pad = 3;
  CHECK(run.Rows(trimmed, 7, true) ==
        "04 05 06 07 08 09 C3 0B 0C 0D 0E 0F 10 C3 12 13 14 15 FF FF FF");
}

TEST_CASE("a run of wide lines has every pixel of each line") {
  for (const WideType& type : WideTypes()) {
    CAPTURE(type.conversion.pixelType);
    const Run run{Noise(type.lineBytes), static_cast<std::int32_t>(kWidth), type.planeBytes};
    const std::size_t rowBytes = type.pixel(run.received.data(), 0).size() * kWidth + 1;
    for (const bool topDown : {true, false}) {
      CHECK(run.Converted(type.conversion, static_cast<std::uint32_t>(rowBytes), topDown) ==
            WideRows(type, run.received, topDown));
    }
  }
}

}  // namespace pmddb832::tests
