#pragma once

#include <cstdint>
#include <vector>

#include "tests/scans/whole_scan.h"

namespace pmddb832::tests {

// The bytes that the host must get for `width` pixels of line `y` from column `x` on, in the row
// format of a pixel type. `converts` tells a host that lets the module reorder the channels, as
// those of every output format but 1 do: true and deep colour come blue first then, and red weighs
// most in an index of the palette; else red comes first, and blue weighs most.
std::vector<std::uint8_t> ExpectedRow(const simulator::Picture& picture, std::uint32_t pixelType,
                                      bool converts, std::uint32_t x, std::uint32_t y,
                                      std::uint32_t width);

}  // namespace pmddb832::tests
