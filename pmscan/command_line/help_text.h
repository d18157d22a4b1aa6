#pragma once

#include <string>

#include "pmscan/command_line/command_line.h"

namespace pmscan {

// What --help prints: of one subcommand, or for kHelp of all.
std::string HelpText(Command command = Command::kHelp);

}  // namespace pmscan
