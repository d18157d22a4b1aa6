#pragma once

#include <string>

namespace pmscan {

// The page that --help prints.
std::string HelpText();

}  // namespace pmscan
