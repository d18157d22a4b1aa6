#pragma once

#include <string>

namespace pmscan {

// The scanner module, loaded as long as this lives. While it is unloaded the module reads the
// settings record for the last time, so that must live longer.
class ModuleLibrary {
 public:
  // `path` in UTF-8; empty for the module beside the program, Pmddb832.dll on Windows and
  // Pmddb832.so elsewhere. Throws Failure(kModuleMissing).
  explicit ModuleLibrary(const std::string& path);
  ~ModuleLibrary();
  ModuleLibrary(const ModuleLibrary&) = delete;
  ModuleLibrary& operator=(const ModuleLibrary&) = delete;

  // Null when the library does not export the name.
  void* Find(const char* name) const;

 private:
  void* library_;
};

}  // namespace pmscan
