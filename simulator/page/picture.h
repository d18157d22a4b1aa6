#pragma once

#include <cstdint>
#include <vector>

namespace simulator {

// 16-bit RGB samples, row by row from the top left, no gaps: 3 * width * height of them.
// 0 is black, 65535 is full light.
struct Picture {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint32_t dotsPerInch = 0;
  std::vector<std::uint16_t> samples;
};

}  // namespace simulator
