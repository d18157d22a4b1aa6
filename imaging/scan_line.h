#pragma once

#include <cstdint>
#include <span>

namespace pmddb832 {

// One raw scan line, as the scanner delivered it. The planes reach to the end of what was received,
// which may be beyond the line or short of it. Valid until the next line is fetched.
struct ScanLine {
  std::int32_t pixelCount = 0;           // pixels, padding included; bytes for the 1-bit type
  std::span<const std::uint8_t> plane0;  // the line's data, or its first colour plane
  std::span<const std::uint8_t> plane1;  // Pix256Color only
  std::span<const std::uint8_t> plane2;  // Pix256Color only
};

// One row of the host's image: the line bytes that were announced, alignment included.
using HostRow = std::span<std::uint8_t>;

}  // namespace pmddb832
