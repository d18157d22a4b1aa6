#include <doctest/doctest.h>

#include "imaging/pixel_conversion.h"
#include "tests/imaging/pixel_oracle.h"

namespace pmddb832::tests {
namespace {

// One pixel of the samples 0x0201, 0x0403 and 0x0605, and one of 0x1211, 0x1413 and 0x1615.
const Bytes kTwoPixels{0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16};

Routine DeepColour(bool swap, bool reduce) {
  return {
      .name = "PixSuperColor",
      .convert = [=](const ScanLine& line, HostRow row, std::int16_t pad,
                     bool white) { Scanutil::PixSuperColor(line, row, swap, pad, reduce, white); },
      .pixelBytes = reduce ? 3U : 6U,
      .lineBytes = [](std::size_t pixels) { return 6 * pixels; },
      .pixel =
          [=](const std::uint8_t* line, std::size_t i, std::uint8_t* to) {
            for (std::size_t c = 0; c < 3; ++c) {
              const std::uint8_t* sample = line + 6 * i + 2 * (swap ? 2 - c : c);
              if (!reduce) *to++ = sample[0];
              *to++ = sample[1];
            }
          }};
}

}  // namespace

TEST_CASE("deep colour: samples are copied unchanged") {
  CHECK(DeepColour(false, false).Row(kTwoPixels, 2, 13, 0) ==
        "01 02 03 04 05 06 11 12 13 14 15 16 C3");
}

TEST_CASE("deep colour: swapped samples keep their byte order") {
  CHECK(DeepColour(true, false).Row(kTwoPixels, 2, 13, 0) ==
        "05 06 03 04 01 02 15 16 13 14 11 12 C3");
}

TEST_CASE("deep colour: reduced samples are their high bytes") {
  CHECK(DeepColour(false, true).Row(kTwoPixels, 2, 7, 0) == "02 04 06 12 14 16 C3");
  CHECK(DeepColour(true, true).Row(kTwoPixels, 2, 7, 0) == "06 04 02 16 14 12 C3");
}

TEST_CASE("deep colour: the pad repeats the last pixel as it was written") {
  CHECK(DeepColour(false, false).Row(kTwoPixels, 2, 12, 1) ==
        "01 02 03 04 05 06 01 02 03 04 05 06");
  CHECK(DeepColour(true, false).Row(kTwoPixels, 2, 12, 1) == "05 06 03 04 01 02 05 06 03 04 01 02");
  CHECK(DeepColour(false, true).Row(kTwoPixels, 2, 6, 1) == "02 04 06 02 04 06");
  CHECK(DeepColour(true, true).Row(kTwoPixels, 2, 6, 1) == "06 04 02 06 04 02");
}

TEST_CASE("deep colour: a white pad is 6 or 3 bytes of 0xFF") {
  CHECK(DeepColour(false, false).Row(kTwoPixels, 2, 13, 1, kWhiteFill) ==
        "01 02 03 04 05 06 FF FF FF FF FF FF C3");
  CHECK(DeepColour(true, true).Row(kTwoPixels, 2, 7, 1, kWhiteFill) == "06 04 02 FF FF FF C3");
}

TEST_CASE("deep colour: a pad not below the pixel count converts nothing") {
  for (const bool swap : {false, true}) {
    CHECK(DeepColour(swap, false).Row(kTwoPixels, 1, 7, 1) == "00 00 00 00 00 00 C3");
    CHECK(DeepColour(swap, true).Row(kTwoPixels, 1, 7, 1) == "00 00 00 C3 C3 C3 C3");
  }
}

TEST_CASE("deep colour: a pixel that is cut off is neither read nor written") {
  const Bytes cut(kTwoPixels.begin(), kTwoPixels.end() - 1);
  CHECK(DeepColour(false, false).Row(cut, 2, 12, 0) == "01 02 03 04 05 06 FF FF FF FF FF FF");
  CHECK(DeepColour(true, true).Row(cut, 2, 6, 0) == "06 04 02 FF FF FF");
  CHECK(DeepColour(true, false).Row(kTwoPixels, 2, 11, 0) == "05 06 03 04 01 02 FF FF FF FF FF");
  CHECK(DeepColour(false, true).Row(kTwoPixels, 2, 5, 0) == "02 04 06 FF FF");
}

TEST_CASE("deep colour: every length, pad and size as the rules say") {
  for (const bool swap : {false, true}) {
    for (const bool reduce : {false, true}) {
      CAPTURE(swap);
      CAPTURE(reduce);
      CHECK(DifferenceFromRules(DeepColour(swap, reduce)) == "");
    }
  }
}

}  // namespace pmddb832::tests
