#include <doctest/doctest.h>

#include <array>
#include <cstdint>

#include "pmscan/pictures/sample_order.h"

namespace {

TEST_CASE("pmscan: the two bytes of each 16-bit sample change places") {
  const std::array<std::uint8_t, 6> samples{0x34, 0x12, 0x78, 0x56, 0xFF, 0x00};
  std::array<std::uint8_t, 6> swapped{};
  pmscan::SwapSampleBytes(samples, swapped);
  CHECK(swapped == std::array<std::uint8_t, 6>{0x12, 0x34, 0x56, 0x78, 0x00, 0xFF});
}

}  // namespace
