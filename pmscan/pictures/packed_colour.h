#pragma once

#include <cstdint>
#include <span>

namespace pmscan {

// Turns pixels of 12-bit colour, two bytes each (blue in the low nibble of the first byte; green in
// the high and red in the low nibble of the second), into pixels of three bytes: blue, green, red.
// A sample 0..15 becomes 17 times itself, so that full light stays full light. `packed` holds two
// bytes for every three of `expanded`.
void ExpandColour12(std::span<const std::uint8_t> packed, std::span<std::uint8_t> expanded);

}  // namespace pmscan
