#pragma once

#include <filesystem>
#include <iosfwd>

#include "pmscan/command_line/command_line.h"

namespace pmscan {

// Lists the profiles in the folder, or tells what is in the one that the options name, as options
// of a scan, or removes that. Throws Failure: kUsage when there is none of that name, kProfile.
void RunProfilesCommand(const Options& options, const std::filesystem::path& folder,
                        std::ostream& output);

}  // namespace pmscan
