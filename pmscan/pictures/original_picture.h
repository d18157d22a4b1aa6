#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "simulator/page/picture.h"

// How a picture file lies on the bed: upright, on white.
namespace pmscan {

// How the file says its picture is turned, 1 to 8 as in EXIF and TIFF: JPEG, PNG or TIFF files do;
// 1, which is upright, for all that do not, and for files that are broken there.
unsigned OrientationIn(std::span<const std::uint8_t> file);

// The picture as it is meant to be seen.
simulator::Picture Upright(simulator::Picture stored, unsigned orientation);

// Samples of 16 bits, red first, for pixels of four bytes: blue, green, red and their opacity.
// White shines through.
std::vector<std::uint16_t> OnWhite(std::span<const std::uint8_t> pixels);

}  // namespace pmscan
