#pragma once

#include <cstdint>

namespace simulator {

// How samples of 1 bit are made: by a threshold, or by a screen whose thresholds differ from pixel
// to pixel. The codes are those of the wire; what they look like is this scanner's own:
//
//   01  the threshold alone
//   00  2 x 2 pixels, dispersed      A0  lines from left to right, 4 pixels apart
//   10  4 x 4 pixels, dispersed      B0  lines from top right to bottom left, 4 pixels apart
//   20  8 x 8 pixels, dispersed      03  black below a quarter, white from three quarters on, and
//   80  dots of 4 x 4 pixels             between them as 10
//   90  dots of 8 x 8 pixels
//
// The place k of n in a screen has the threshold (2 k + 1) / (2 n) of full light.

inline constexpr std::uint8_t kThresholdAlone = 0x01;

// Whether scanners whose level has the digit know the code.
bool IsKnownScreen(std::uint8_t code, char levelDigit);

// Whether a sample is white in column `x` and line `y` of what is scanned. The screen is one of the
// codes; `threshold` is the high byte from which on a sample is white without one.
bool IsWhite(std::uint8_t screen, std::uint8_t threshold, std::uint16_t sample, std::uint32_t x,
             std::uint32_t y);

}  // namespace simulator
