#pragma once

#include <string>

#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/option_table.h"
#include "pmscan/scan/scan_profile.h"

namespace pmscan {

// The file that a device is made of, as of "capture:FILE" and "sim:FILE.json"; empty when it is
// made of none.
std::string DeviceFile(const std::string& device);

// The file that an option of profiles names; empty when it names none.
std::string FileNamedBy(const KeptOption& option);

// The option with the whole path of its file, for another folder. A simulated scanner that is not
// in this folder keeps its name: the program brings some.
KeptOption ForAnyFolder(const KeptOption& option);

// The failure, told with the profile where that names the file that it is about.
Failure WithProfile(const Failure& failure, const Options& options);

// Throws Failure(kUnsupported) when the command would write a file that it reads, or write one
// twice.
void RequireOwnFiles(const CommandWords& words);

}  // namespace pmscan
