#pragma once

#include <string>

#include "simulator/page/picture.h"

namespace pmscan {

// Reads a PNG, TIFF, JPEG or BMP file, on Windows one of any format that the system's imaging
// component knows, with its resolution. 16-bit samples stay as they are unless some are
// transparent, others are widened to 16 bits; it is turned upright, and white where it is
// transparent. `file` in UTF-8. Throws Failure(kInputFile).
simulator::Picture ReadPicture(const std::string& file);

}  // namespace pmscan
