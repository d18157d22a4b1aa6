#include <doctest/doctest.h>

#include <array>
#include <cstdint>

#include "pmscan/pictures/packed_colour.h"

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

}  // namespace
