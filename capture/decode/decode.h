#pragma once

#include <string>
#include <vector>

#include "capture/decode/decode_page.h"
#include "capture/file/capture.h"

namespace capture {

// The conversation as text, lines of plain ASCII: the host's calls as headings, below each the
// exchanges with the scanner. What is alike is told once ("... 9 more like it"); a line on what
// went wrong begins with "!!".
std::string Decode(const Capture& capture);

// The same call by call, nothing folded. What lies outside the calls is a story without a heading.
std::vector<CallStory> TellCalls(const Capture& capture);

}  // namespace capture
