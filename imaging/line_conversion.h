#pragma once

#include <cstdint>

#include "imaging/scan_line.h"

namespace pmddb832 {

// Whether the rows of a band are delivered from the top, for the output format that the host gave
// when it set the scan up; else they are delivered from the bottom.
constexpr bool IsTopDown(std::uint32_t outputFormat) {
  return outputFormat == 1 || outputFormat == 3 || outputFormat == 5 || outputFormat == 6;
}

struct LineConversion {
  bool convert;      // reorder the colour channels for the host
  std::int16_t pad;  // pixels cut off at the edge of the area
};

// Converts a line of line art, grey, 12-bit colour or a deep type, which both command sets treat
// alike, as the settings ask. Other pixel types write nothing.
void ConvertLine(std::uint32_t pixelType, const ScanLine& line, HostRow row,
                 const LineConversion& conversion);

}  // namespace pmddb832
