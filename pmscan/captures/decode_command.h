#pragma once

#include <iosfwd>

#include "pmscan/command_line/command_line.h"

namespace pmscan {

// Tells the conversation in a capture file. Throws Failure(kCaptureUnreadable).
void RunDecodeCommand(const Options& options, std::ostream& out);

}  // namespace pmscan
