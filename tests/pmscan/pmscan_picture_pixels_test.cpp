#include <doctest/doctest.h>

#include <array>
#include <cstdint>

#include "pmscan/pictures/picture_pixels.h"

namespace {

TEST_CASE("pmscan: 12-bit colour becomes blue, green and red bytes of 17 times the sample") {
  const std::array<std::uint8_t, 4> packed{0x05, 0x31, 0x06, 0x42};
  std::array<std::uint8_t, 6> expanded{};
  pmscan::ExpandColour12(packed, expanded);
  CHECK(expanded == std::array<std::uint8_t, 6>{0x55, 0x33, 0x11, 0x66, 0x44, 0x22});
}

TEST_CASE("pmscan: white stays white and black stays black in 12-bit colour") {
  const std::array<std::uint8_t, 4> packed{0x0F, 0xFF, 0x00, 0x00};
  std::array<std::uint8_t, 6> expanded{};
  pmscan::ExpandColour12(packed, expanded);
  CHECK(expanded == std::array<std::uint8_t, 6>{0xFF, 0xFF, 0xFF, 0, 0, 0});
}

TEST_CASE("pmscan: the unused half of the first byte of 12-bit colour does not count") {
  const std::array<std::uint8_t, 2> packed{0xF1, 0x23};
  std::array<std::uint8_t, 3> expanded{};
  pmscan::ExpandColour12(packed, expanded);
  CHECK(expanded == std::array<std::uint8_t, 3>{0x11, 0x22, 0x33});
}

TEST_CASE("pmscan: the two bytes of each 16-bit sample change places") {
  const std::array<std::uint8_t, 6> samples{0x34, 0x12, 0x78, 0x56, 0xFF, 0x00};
  std::array<std::uint8_t, 6> swapped{};
  pmscan::SwapSampleBytes(samples, swapped);
  CHECK(swapped == std::array<std::uint8_t, 6>{0x12, 0x34, 0x56, 0x78, 0x00, 0xFF});
}

TEST_CASE("pmscan: samples of 12 and 14 bits fill the range of 16") {
  std::array<std::uint8_t, 6> twelve{0xF0, 0xFF, 0x00, 0x80, 0x00, 0x00};
  pmscan::FillRange(twelve, 12);
  CHECK(twelve == std::array<std::uint8_t, 6>{0xFF, 0xFF, 0x08, 0x80, 0x00, 0x00});
  std::array<std::uint8_t, 6> fourteen{0xFC, 0xFF, 0x04, 0x80, 0x00, 0x00};
  pmscan::FillRange(fourteen, 14);
  CHECK(fourteen == std::array<std::uint8_t, 6>{0xFF, 0xFF, 0x06, 0x80, 0x00, 0x00});
}

}  // namespace
