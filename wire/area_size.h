#pragma once

#include <cstdint>

namespace pmddb832 {

// A scan area in pixels, at the resolution that its owner states.
struct AreaSize {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
};

}  // namespace pmddb832
