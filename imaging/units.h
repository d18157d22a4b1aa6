#pragma once

#include <cstdint>

// Lengths are in hundredths of an inch, resolutions in dots per inch. The conversions give the same
// for every rounding and flush mode that the host has set, and raise no exception that it unmasked.
namespace pmddb832::Scanutil {

// Pixels in `length` at `resolution`, rounded half up for lengths that are not negative. The low 32
// bits of the result; 0 when it is beyond 64 bits or not a number.
std::int32_t InchesToPixelsORWIA(double length, double resolution);

// Length of `pixels` at `resolution`, not rounded. A resolution of 0 gives infinity or
// not-a-number.
double PixelsToInchesORWIA(double pixels, double resolution);

// The product of two factors divided by 100, rounded half up; its low 16 bits.
std::uint16_t CalcResolution(std::uint16_t a, std::uint16_t b);

}  // namespace pmddb832::Scanutil
