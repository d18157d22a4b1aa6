#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pmscan {

enum class LengthUnit { kInch, kMillimetre, kCentimetre, kPixel };

struct Length {
  double amount = 0;
  LengthUnit unit = LengthUnit::kPixel;
};

// Reads "1.5in", "50 mm", "2cm" or "300px". A length is not negative and always has its unit.
// Throws Failure(kUsage).
Length ParseLength(std::string_view text);

// The length at a resolution, rounded to the nearest whole pixel. Throws Failure(kUnsupported) when
// it does not fit 32 bits.
std::uint32_t ToPixels(const Length& length, std::uint32_t dotsPerInch);

// Sizes for people: "8.50 x 11.70 in (215.9 x 297.2 mm)".
std::string FormatSize(double widthInches, double heightInches);

}  // namespace pmscan
