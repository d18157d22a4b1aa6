#define WIN32_LEAN_AND_MEAN
#include "pmscan/command_line/program_folder.h"

#include <windows.h>

#include <string>

namespace pmscan {
namespace {

constexpr DWORD kLongestPath = 32768;

}  // namespace

std::filesystem::path ProgramFolder() {
  std::wstring program(kLongestPath, L'\0');
  program.resize(GetModuleFileNameW(nullptr, program.data(), kLongestPath));
  return std::filesystem::path(program).parent_path();
}

}  // namespace pmscan
