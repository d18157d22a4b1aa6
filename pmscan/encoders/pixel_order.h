#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "pmscan/scan/scan_mode.h"

namespace pmscan {

inline constexpr std::size_t kPaletteColours = 216;

// Red, green and blue of a colour of mode palette.
constexpr std::array<std::uint8_t, 3> PaletteColour(std::size_t index) {
  constexpr std::size_t kStep = 0x33;
  return {static_cast<std::uint8_t>(index / 36 * kStep),
          static_cast<std::uint8_t>(index / 6 % 6 * kStep),
          static_cast<std::uint8_t>(index % 6 * kStep)};
}

// Copies the pixels of a line, with red in front of green and blue whatever the layout.
void RedFirst(PixelLayout layout, std::span<const std::uint8_t> line,
              std::vector<std::uint8_t>& target);

// The same with the high byte of deep samples first.
void RedAndHighFirst(PixelLayout layout, std::span<const std::uint8_t> line,
                     std::vector<std::uint8_t>& target);

}  // namespace pmscan
