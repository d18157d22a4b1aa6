#define WIN32_LEAN_AND_MEAN
#include "pmscan/scan/module_library.h"

#include <windows.h>

#include <filesystem>

#include "pmscan/command_line/console.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/windows/wide_text.h"

namespace pmscan {
namespace {

std::filesystem::path BesideTheProgram() {
  return ProgramFolder() / "Pmddb832.dll";
}

}  // namespace

ModuleLibrary::ModuleLibrary(const std::string& path) {
  // An absolute path also makes Windows look for what the library itself needs beside it.
  const std::filesystem::path file =
      path.empty() ? BesideTheProgram() : std::filesystem::absolute(ToWide(path));
  library_ = LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (library_ != nullptr) return;
  const DWORD reason = GetLastError();
  throw Failure(kModuleMissing, (path.empty() ? std::string("Pmddb832.dll") : path) +
                                    " did not load: " + SystemWords(reason) + ".");
}

ModuleLibrary::~ModuleLibrary() {
  FreeLibrary(static_cast<HMODULE>(library_));
}

void* ModuleLibrary::Find(const char* name) const {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library_), name));
}

}  // namespace pmscan
