#pragma once

#include <string>

#include "capture/file/capture.h"

namespace capture {

// The conversation as text, lines of plain ASCII: the host's calls as headings, below each the
// exchanges with the scanner. What is alike is told once ("... 9 more like it"); a line on what
// went wrong begins with "!!".
std::string Decode(const Capture& capture);

}  // namespace capture
