#pragma once

#include <cstdint>
#include <string>

namespace simulator {

// Pixels and lines, counted from the top left of what is scanned.
struct ScanArea {
  std::uint32_t left = 0;
  std::uint32_t top = 0;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
};

// Why an area cannot be scanned where there are so many columns and lines: it is empty, or reaches
// outside. Empty when it can.
std::string WhyOutside(const ScanArea& area, std::uint64_t columns, std::uint64_t lines);

}  // namespace simulator
