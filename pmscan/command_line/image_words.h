#pragma once

#include "pmscan/command_line/option_table.h"

namespace pmscan {

// Makes the image settings and the focus of a scan whose mode and source are known. Throws Failure
// as ReadScanWords does.
void ReadImageWords(const CommandWords& words, Options& options);

}  // namespace pmscan
