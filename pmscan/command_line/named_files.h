#pragma once

#include <string>

#include "pmscan/command_line/option_table.h"

namespace pmscan {

// The file that a device is made of, as of "capture:FILE" and "sim:FILE.json"; empty when it is
// made of none.
std::string DeviceFile(const std::string& device);

// Throws Failure(kUnsupported) when the command would write a file that it reads, or write one
// twice.
void RequireOwnFiles(const CommandWords& words);

}  // namespace pmscan
