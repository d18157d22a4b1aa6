#include <doctest/doctest.h>

#include <initializer_list>

#include "imaging/pixel_conversion.h"
#include "tests/imaging/pixel_oracle.h"

namespace pmddb832::tests {
namespace {

std::string RowOf(std::int32_t byteCount, const Bytes& line, std::size_t rowBytes, std::int16_t pad,
                  bool invert, bool whiteFill = false) {
  return Hex(Converted(line, byteCount, rowBytes, [&](const ScanLine& scanLine, HostRow row) {
    Scanutil::Pix2Mono(scanLine, row, pad, invert, whiteFill);
  }));
}

// Row of `rowBytes` for a line of as many bytes as it has.
std::string Row(const Bytes& line, std::size_t rowBytes, std::int16_t pad, bool invert,
                bool whiteFill = false) {
  return RowOf(static_cast<std::int32_t>(line.size()), line, rowBytes, pad, invert, whiteFill);
}

}  // namespace

TEST_CASE("line art: all bytes are copied, inverted when asked") {
  CHECK(Row({0x00, 0x12, 0xFF}, 3, 0, false) == "00 12 FF");
  CHECK(Row({0x00, 0x12, 0xFF}, 3, 0, true) == "FF ED 00");
}

TEST_CASE("line art: the pad is appended, rounded up to whole bytes") {
  for (const std::int16_t pad : {std::int16_t{0}, std::int16_t{-1}, std::int16_t{-32768}}) {
    CHECK(Row({0x12, 0x34}, 4, pad, false) == "12 34 C3 C3");
  }
  CHECK(Row({0x12, 0x34}, 4, 1, false) == "12 34 34 C3");
  CHECK(Row({0x12, 0x34}, 4, 8, false) == "12 34 34 C3");
  CHECK(Row({0x12, 0x34}, 4, 9, false) == "12 34 34 34");
}

TEST_CASE("line art: the fill is the last byte as read, even when inverted") {
  CHECK(Row({0x12, 0x34}, 3, 1, true) == "ED CB 34");
}

TEST_CASE("line art: a white fill is 0xFF, even when inverted") {
  CHECK(Row({0x12, 0x34}, 3, 1, false, kWhiteFill) == "12 34 FF");
  CHECK(Row({0x12, 0x34}, 4, 9, true, kWhiteFill) == "ED CB FF FF");
}

TEST_CASE("line art: without a converted byte the fill is 0") {
  CHECK(RowOf(0, {0x12}, 2, 9, false) == "00 00");
  CHECK(RowOf(0, {0x12}, 2, 9, true) == "00 00");
  CHECK(RowOf(-5, {0x12}, 2, 1, false) == "00 C3");
}

TEST_CASE("line art: a line shorter than asked leaves the rest white") {
  CHECK(RowOf(4, {0x12, 0x34}, 6, 9, true) == "ED CB FF FF FF FF");
  CHECK(RowOf(1, {}, 3, 1, false) == "FF FF FF");
}

TEST_CASE("line art: a row shorter than asked holds what fits") {
  CHECK(Row({0x12, 0x34, 0x56}, 2, 9, true) == "ED CB");
  CHECK(Row({0x12, 0x34, 0x56}, 4, 9, false) == "12 34 56 56");
  CHECK(Row({0x12, 0x34, 0x56}, 0, 9, false) == "");
}

TEST_CASE("line art: every length, pad and size as the rules say") {
  for (const bool invert : {false, true}) {
    const Routine routine{
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
        .repeated = [](const std::uint8_t* line, std::size_t i,
                       std::uint8_t* to) { *to = line[i]; }};
    CHECK(DifferenceFromRules(routine) == "");
  }
}

}  // namespace pmddb832::tests
