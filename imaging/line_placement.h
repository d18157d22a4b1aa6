#pragma once

#include <cstdint>

namespace pmddb832 {

constexpr std::uint32_t RoundDownTo8(std::uint32_t pixels) {
  return pixels & ~7u;
}
constexpr std::uint32_t RoundUpTo8(std::uint32_t pixels) {
  return RoundDownTo8(pixels + 7);
}

// Where a line of the scan area is taken from, in pixels at the scan resolution.
struct LinePlacement {
  std::uint32_t left;
  std::uint32_t width;
  std::uint16_t padPixels;  // requested pixels that are not sent, or sent ones not requested
};

// Fits the requested line into an area of `limit` pixels, in a width that is a multiple of 8: cut
// at its right edge, or kept at its right edge with `fromRight`. Sums and differences of edges wrap
// at 32 bits.
LinePlacement PlaceInGroupsOf8(std::uint32_t left, std::uint32_t width, std::uint32_t limit,
                               bool fromRight);

// Fits it where samples are whole bytes and any width can be sent: cut at its right edge, or moved
// to the left with `fromRight`.
LinePlacement PlaceByteAligned(std::uint32_t left, std::uint32_t width, std::uint32_t limit,
                               bool fromRight);

}  // namespace pmddb832
