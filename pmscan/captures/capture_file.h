#pragma once

#include <string>

#include "capture/file/capture.h"

namespace pmscan {

// Reads the capture in a file whose name is in UTF-8. Throws Failure(kCaptureUnreadable) that names
// the file and the line.
capture::Capture ReadCaptureFile(const std::string& fileName);

// Throws Failure(kFileUnwritable) for a file that is there and may not be replaced.
void RequireFree(const std::string& fileName, bool mayOverwrite);

}  // namespace pmscan
