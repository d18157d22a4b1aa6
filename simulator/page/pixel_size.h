#pragma once

#include <cstdint>

namespace simulator {

struct PixelSize {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
};

}  // namespace simulator
