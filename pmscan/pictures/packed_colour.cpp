#include "pmscan/pictures/packed_colour.h"

#include <cstddef>

namespace pmscan {
namespace {

std::uint8_t Widen(unsigned nibble) {
  return static_cast<std::uint8_t>(nibble * 17);
}

}  // namespace

void ExpandColour12(std::span<const std::uint8_t> packed, std::span<std::uint8_t> expanded) {
  for (std::size_t pixel = 0; pixel < expanded.size() / 3; ++pixel) {
    const std::uint8_t first = packed[2 * pixel];
    const std::uint8_t second = packed[2 * pixel + 1];
    expanded[3 * pixel] = Widen(first & 0x0Fu);
    expanded[3 * pixel + 1] = Widen(second >> 4u);
    expanded[3 * pixel + 2] = Widen(second & 0x0Fu);
  }
}

}  // namespace pmscan
