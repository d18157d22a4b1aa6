#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "pmscan/command_line/length.h"

namespace pmscan {

// The area as the user asks for it.
struct AreaRequest {
  Length left;
  Length top;
  Length width;
  Length height;
};

// Reads "LEFT,TOP,WIDTH,HEIGHT", each with its unit, or the name of a paper size, which lies in the
// top left corner. Throws Failure(kUsage).
AreaRequest ParseArea(std::string_view text);

// The largest area of a source in hundredths of an inch, as the scanner told it.
struct BedSize {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
};

// Pixels of an extent in hundredths of an inch, the fraction cut off.
std::uint32_t BedPixels(std::uint32_t hundredths, std::uint32_t dotsPerInch);

std::string FormatBedSize(const BedSize& bed);

// The area in pixels at the scan's resolution.
struct PixelArea {
  std::uint32_t left = 0;
  std::uint32_t top = 0;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
};

// The requested area on the bed, or the whole bed. The bed's size is rounded down to 1/100 inch, so
// an area that reaches beyond it by less than that is trimmed; one that reaches farther, or is
// empty, throws Failure(kUnsupported).
PixelArea PlaceArea(const std::optional<AreaRequest>& request, const BedSize& bed,
                    std::uint32_t dotsPerInch);

}  // namespace pmscan
