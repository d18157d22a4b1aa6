#pragma once

#include <string>

namespace pmscan {

// The scanner module, loaded as long as this lives. While it is unloaded the module reads the
// settings record for the last time, so that must live longer.
class ModuleLibrary {
 public:
  // `path` in UTF-8; empty for Pmddb832.dll beside the program. Throws Failure(kModuleMissing).
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
