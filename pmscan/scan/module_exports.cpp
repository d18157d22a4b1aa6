#include "pmscan/scan/module_exports.h"

#include <string>

#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

template <typename Function>
void Bind(const FindExport& find, const char* name, Function& function) {
  function = reinterpret_cast<Function>(find(name));
  if (function == nullptr) {
    throw Failure(kModuleMissing, std::string("The library has no function ") + name + ".");
  }
}

}  // namespace

ModuleExports BindExports(const FindExport& find) {
  ModuleExports module;
  std::apply([&](const auto&... row) { (Bind(find, row.name, module.*row.member), ...); },
             kModuleExports);
  return module;
}

}  // namespace pmscan
