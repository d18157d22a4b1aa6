#pragma once

#include <string>

#include "pmscan/command_line/command_line.h"
#include "pmscan/report/json_report.h"

namespace pmscan {

// Replays a capture against the module. What the module does in another way goes to standard error,
// with it what became of the picture; a summary, which tells what the module did then, to standard
// output, or into `report`. A capture of it begins with `commandText`. Throws Failure:
// kReplayDiffers, kCaptureUnreadable, and those of the picture and the capture that are written.
void RunReplayCommand(const Options& options, const std::string& commandText, Json& report);

}  // namespace pmscan
