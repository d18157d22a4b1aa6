#pragma once

#include <string>

#include "pmscan/settings/image_settings.h"

// Files of numbers: whole ones with blanks, commas or line ends between them; what follows a "#" in
// a line is a remark. Names are UTF-8.
namespace pmscan {

// 256 numbers, 0 to 255, one table for all channels; or 768, the tables of red, green and blue.
// Throws Failure(kNumberFile) that tells what was expected and what stands there.
GammaTables ReadGammaTables(const std::string& file);

// Nine numbers, -128 to 127. Throws Failure(kNumberFile) likewise.
ColorMatrix ReadColorMatrix(const std::string& file);

}  // namespace pmscan
