#pragma once

#include <istream>
#include <string>

#include "capture/file/capture.h"
#include "capture/file/text_line.h"

namespace capture {

// Reads a capture from text (docs/capture-format.md). `fileName` is for messages only. Throws
// FormatError. The capture may end inside a call: that is what a crash leaves.
Capture ReadCapture(std::istream& text, const std::string& fileName);

}  // namespace capture
