#pragma once

#include <string>

#include "simulator/page/picture.h"

namespace pmscan {

// Reads a picture file of any format that Windows' imaging component knows, with its resolution.
// 16-bit samples stay as they are, others are widened to 16 bits; it is turned upright, and white
// where it is transparent. `file` in UTF-8. Throws
// Failure(kInputFile).
simulator::Picture ReadPicture(const std::string& file);

}  // namespace pmscan
