#include <doctest/doctest.h>

#include "imaging/pixel_conversion.h"
#include "tests/imaging/pixel_oracle.h"

namespace pmddb832::tests {
namespace {

Routine TrueColour(bool swap) {
  return {.name = swap ? "PixTrueColor swapped" : "PixTrueColor",
          .convert = [=](const ScanLine& line, HostRow row, std::int16_t pad,
                         bool white) { Scanutil::PixTrueColor(line, row, swap, pad, white); },
          .pixelBytes = 3,
          .lineBytes = [](std::size_t pixels) { return 3 * pixels; },
          .pixel =
              [=](const std::uint8_t* line, std::size_t i, std::uint8_t* to) {
                for (std::size_t c = 0; c < 3; ++c) to[c] = line[3 * i + (swap ? 2 - c : c)];
              }};
}

const Routine kColour12{.name = "Pix4096Color",
                        .convert = Scanutil::Pix4096Color,
                        .pixelBytes = 2,
                        .lineBytes = [](std::size_t pixels) { return (pixels + 1) / 2 * 3; },
                        .pixel =
                            [](const std::uint8_t* line, std::size_t i, std::uint8_t* to) {
                              const auto nibble = [&](std::size_t channel) {
                                const std::uint8_t byte = line[i / 2 * 3 + channel];
                                return i % 2 == 0 ? byte / 16 : byte % 16;
                              };
                              to[0] = static_cast<std::uint8_t>(nibble(2));
                              to[1] = static_cast<std::uint8_t>(16 * nibble(1) + nibble(0));
                            }};

}  // namespace

TEST_CASE("true colour: bytes are copied, or each pixel's are reversed") {
  CHECK(TrueColour(false).Row({1, 2, 3, 4, 5, 6}, 2, 7, 0) == "01 02 03 04 05 06 C3");
  CHECK(TrueColour(true).Row({1, 2, 3, 4, 5, 6}, 2, 7, 0) == "03 02 01 06 05 04 C3");
}

TEST_CASE("true colour: the pad repeats the last pixel as it was written") {
  CHECK(TrueColour(false).Row({1, 2, 3, 4, 5, 6}, 2, 6, 1) == "01 02 03 01 02 03");
  CHECK(TrueColour(true).Row({1, 2, 3, 4, 5, 6}, 2, 6, 1) == "03 02 01 03 02 01");
  CHECK(TrueColour(true).Row({1, 2, 3, 4, 5, 6}, 2, 6, 1, kWhiteFill) == "03 02 01 FF FF FF");
}

TEST_CASE("true colour: a pad not below the pixel count converts nothing") {
  for (const bool swap : {false, true}) {
    CHECK(TrueColour(swap).Row({1, 2, 3}, 1, 4, 1) == "00 00 00 C3");
    CHECK(TrueColour(swap).Row({1, 2, 3}, 1, 7, 2) == "00 00 00 00 00 00 C3");
  }
}

TEST_CASE("true colour: a pixel that is cut off is neither read nor written") {
  for (const bool swap : {false, true}) {
    CHECK(TrueColour(swap).Row({7, 7, 7, 4, 5}, 2, 6, 0) == "07 07 07 FF FF FF");
    CHECK(TrueColour(swap).Row({7, 7, 7, 4, 5, 6}, 2, 5, 0) == "07 07 07 FF FF");
    CHECK(TrueColour(swap).Row({7, 7, 7, 4, 5, 6}, 2, 5, 1) == "07 07 07 FF FF");
  }
}

TEST_CASE("12-bit colour: two pixels of three bytes") {
  CHECK(kColour12.Row({0x12, 0x34, 0x56}, 2, 4, 0) == "05 31 06 42");
  CHECK(kColour12.Row({0xF0, 0x00, 0x00}, 2, 4, 0) == "00 0F 00 00");
  CHECK(kColour12.Row({0x00, 0xF0, 0x00}, 2, 4, 0) == "00 F0 00 00");
  CHECK(kColour12.Row({0x00, 0x00, 0xF0}, 2, 4, 0) == "0F 00 00 00");
  CHECK(kColour12.Row({0x0F, 0x00, 0x00}, 2, 4, 0) == "00 00 00 0F");
  CHECK(kColour12.Row({0x00, 0x0F, 0x00}, 2, 4, 0) == "00 00 00 F0");
  CHECK(kColour12.Row({0x00, 0x00, 0x0F}, 2, 4, 0) == "00 00 0F 00");
}

TEST_CASE("12-bit colour: an odd count stops after a first pixel") {
  CHECK(kColour12.Row({0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC}, 3, 8, 0) == "05 31 06 42 0B 97 C3 C3");
  CHECK(kColour12.Row({0x12, 0x34, 0x56}, 2, 4, 1) == "05 31 05 31");
  CHECK(kColour12.Row({0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC}, 4, 8, 2) == "05 31 06 42 06 42 06 42");
}

TEST_CASE("12-bit colour: fill and cuts") {
  CHECK(kColour12.Row({0x12, 0x34, 0x56}, 2, 4, 2) == "00 00 00 00");
  CHECK(kColour12.Row({0x12, 0x34, 0x56, 0x78, 0x9A}, 4, 8, 0) == "05 31 06 42 FF FF FF FF");
  CHECK(kColour12.Row({0x12, 0x34, 0x56}, 2, 3, 0) == "05 31 FF");
  CHECK(kColour12.Row({0x12, 0x34, 0x56}, 2, 4, 1, kWhiteFill) == "05 31 FF FF");
}

TEST_CASE("colour: every length, pad and size as the rules say") {
  for (const Routine& routine : {TrueColour(false), TrueColour(true), kColour12}) {
    CHECK(DifferenceFromRules(routine) == "");
  }
}

}  // namespace pmddb832::tests
