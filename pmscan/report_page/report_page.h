#pragma once

#include <string>

#include "capture/file/capture.h"

namespace pmscan {

// A report on the capture as one HTML page in ASCII, which needs nothing else: style, script and
// pictures are within it. `fileName` is that of the capture, for its reader. The same capture gives
// the same page, byte by byte.
std::string ReportPage(const capture::Capture& capture, const std::string& fileName,
                       bool showsPictures);

}  // namespace pmscan
