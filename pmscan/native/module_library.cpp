#include "pmscan/scan/module_library.h"

#include <dlfcn.h>

#include <filesystem>

#include "pmscan/command_line/console.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/file_name.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

enum class Moment : std::uint32_t { kUnloaded = 0, kLoaded = 1 };

// Windows makes this call where it loads and unloads the module.
void Tell(void* library, Moment moment) {
  using EntryPoint = std::int32_t (*)(void* instance, std::uint32_t reason, void* reserved);
  const auto entry = reinterpret_cast<EntryPoint>(dlsym(library, "DllMain"));
  if (entry != nullptr) entry(library, static_cast<std::uint32_t>(moment), nullptr);
}

}  // namespace

// A name without a folder would be looked for among the system's libraries.
ModuleLibrary::ModuleLibrary(const std::string& path) {
  const std::filesystem::path file =
      path.empty() ? ProgramFolder() / "Pmddb832.so" : std::filesystem::absolute(PathOf(path));
  library_ = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library_ == nullptr) {
    throw Failure(kModuleMissing, (path.empty() ? std::string("Pmddb832.so") : path) +
                                      " did not load: " + dlerror() + ".");
  }
  Tell(library_, Moment::kLoaded);
}

ModuleLibrary::~ModuleLibrary() {
  Tell(library_, Moment::kUnloaded);
  dlclose(library_);
}

void* ModuleLibrary::Find(const char* name) const {
  return dlsym(library_, name);
}

}  // namespace pmscan
