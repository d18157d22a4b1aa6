#pragma once

#include "pmscan/command_line/option_table.h"

namespace pmscan {

// Makes the options of a scan of the words on the command line, and reads the files of numbers that
// they name. Throws Failure: kUsage, kNumberFile, or kUnsupported when the options contradict each
// other, whatever the scanner is.
void ReadScanWords(const CommandWords& words, Options& options);

}  // namespace pmscan
