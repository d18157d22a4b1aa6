#pragma once

#include <iosfwd>

#include "pmscan/command_line/command_line.h"

namespace pmscan {

// Tells the conversation in a capture file. Throws Failure(kCaptureUnreadable).
void RunDecodeCommand(const Options& options, std::ostream& out);

// Writes a capture file as pcapng, and says on `out` what was written. Throws Failure:
// kCaptureUnreadable, or kFileUnwritable, also for a file that is there and may not be replaced.
// A file that could not be written to its end is removed.
void RunConvertCommand(const Options& options, std::ostream& out);

// Writes a report on a capture file as one page of HTML; else as RunConvertCommand.
void RunReportCommand(const Options& options, std::ostream& out);

}  // namespace pmscan
