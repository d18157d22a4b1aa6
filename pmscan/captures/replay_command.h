#pragma once

#include "pmscan/command_line/command_line.h"

namespace pmscan {

// Replays a capture against the module, and prints a summary on standard output; what the module
// does in another way goes to standard error. Throws Failure: kReplayDiffers, kCaptureUnreadable,
// and those of the picture file.
void RunReplayCommand(const Options& options);

}  // namespace pmscan
