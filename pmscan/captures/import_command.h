#pragma once

#include <iosfwd>
#include <string>

#include "pmscan/command_line/command_line.h"

namespace pmscan {

// Where the capture goes: unless it is said, "folder/usb.pcapng" becomes "folder/usb.capture".
std::string ImportedFile(const Options& options);

// Makes a capture of a trace, and says on `out` whose it is and what was left out. Throws Failure:
// kTraceUnreadable, or kFileUnwritable, also for a file that is there and may not be replaced.
// A file that could not be written to its end is removed.
void RunImportCommand(const Options& options, std::ostream& out);

}  // namespace pmscan
