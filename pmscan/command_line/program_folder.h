#pragma once

#include <filesystem>

namespace pmscan {

// The folder that this program lies in.
std::filesystem::path ProgramFolder();

}  // namespace pmscan
