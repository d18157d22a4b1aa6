#pragma once

#include "pmscan/command_line/option_table.h"

namespace pmscan {

// The files of a scan, as the words on the command line have them. Throws Failure(kUsage).
void ReadOutput(const CommandWords& words, Options& options);

// Throws Failure when the files cannot hold what the options ask for: kUsage when there is none,
// else kUnsupported.
void RequireOutputHolds(const Options& options);

}  // namespace pmscan
