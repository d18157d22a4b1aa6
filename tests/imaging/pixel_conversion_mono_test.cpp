#include <doctest/doctest.h>

#include <initializer_list>

#include "imaging/pixel_conversion.h"
#include "tests/imaging/pixel_oracle.h"

namespace pmddb832::tests {
namespace {

Routine LineArt(bool invert) {
  return {
      .name = invert ? "Pix2Mono inverted" : "Pix2Mono",
      .convert = [=](const ScanLine& line, HostRow row, std::int16_t pad,
                     bool white) { Scanutil::Pix2Mono(line, row, pad, invert, white); },
      .frame = [](std::int32_t bytes, std::int16_t pad) -> Frame {
        return {bytes, pad < 1 ? 0 : (pad + 7) / 8};
      },
      .pixelBytes = 1,
      .lineBytes = [](std::size_t bytes) { return bytes; },
      .pixel =
          [=](const std::uint8_t* line, std::size_t i, std::uint8_t* to) {
            *to = static_cast<std::uint8_t>(invert ? 0xFF - line[i] : line[i]);
          },
      .repeated = [](const std::uint8_t* line, std::size_t i, std::uint8_t* to) { *to = line[i]; }};
}

}  // namespace

TEST_CASE("line art: all bytes are copied, inverted when asked") {
  CHECK(LineArt(false).Row({0x00, 0x12, 0xFF}, 3, 3, 0) == "00 12 FF");
  CHECK(LineArt(true).Row({0x00, 0x12, 0xFF}, 3, 3, 0) == "FF ED 00");
}

TEST_CASE("line art: the pad is appended, rounded up to whole bytes") {
  for (const std::int16_t pad : {std::int16_t{0}, std::int16_t{-1}, std::int16_t{-32768}}) {
    CHECK(LineArt(false).Row({0x12, 0x34}, 2, 4, pad) == "12 34 C3 C3");
  }
  CHECK(LineArt(false).Row({0x12, 0x34}, 2, 4, 1) == "12 34 34 C3");
  CHECK(LineArt(false).Row({0x12, 0x34}, 2, 4, 8) == "12 34 34 C3");
  CHECK(LineArt(false).Row({0x12, 0x34}, 2, 4, 9) == "12 34 34 34");
}

TEST_CASE("line art: the fill is the last byte as read, even when inverted") {
  CHECK(LineArt(true).Row({0x12, 0x34}, 2, 3, 1) == "ED CB 34");
}

TEST_CASE("line art: a white fill is 0xFF, even when inverted") {
  CHECK(LineArt(false).Row({0x12, 0x34}, 2, 3, 1, kWhiteFill) == "12 34 FF");
  CHECK(LineArt(true).Row({0x12, 0x34}, 2, 4, 9, kWhiteFill) == "ED CB FF FF");
}

TEST_CASE("line art: without a converted byte the fill is 0") {
  CHECK(LineArt(false).Row({0x12}, 0, 2, 9) == "00 00");
  CHECK(LineArt(true).Row({0x12}, 0, 2, 9) == "00 00");
  CHECK(LineArt(false).Row({0x12}, -5, 2, 1) == "00 C3");
}

TEST_CASE("line art: a line shorter than asked leaves the rest white") {
  CHECK(LineArt(true).Row({0x12, 0x34}, 4, 6, 9) == "ED CB FF FF FF FF");
  CHECK(LineArt(false).Row({}, 1, 3, 1) == "FF FF FF");
}

TEST_CASE("line art: a row shorter than asked holds what fits") {
  CHECK(LineArt(true).Row({0x12, 0x34, 0x56}, 3, 2, 9) == "ED CB");
  CHECK(LineArt(false).Row({0x12, 0x34, 0x56}, 3, 4, 9) == "12 34 56 56");
  CHECK(LineArt(false).Row({0x12, 0x34, 0x56}, 3, 0, 9) == "");
}

TEST_CASE("line art: every length, pad and size as the rules say") {
  for (const bool invert : {false, true}) CHECK(DifferenceFromRules(LineArt(invert)) == "");
}

}  // namespace pmddb832::tests
