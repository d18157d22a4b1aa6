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
  Bind(find, "PMOpenScanner", module.openScanner);
  Bind(find, "PMCloseScanner", module.closeScanner);
  Bind(find, "PMInitAcquire", module.initAcquire);
  Bind(find, "PMAcquireImage", module.acquireImage);
  Bind(find, "PMAbortScan", module.abortScan);
  Bind(find, "PMGetOptionStatus", module.getOptionStatus);
  Bind(find, "PMEnableOption", module.enableOption);
  Bind(find, "PMGetScanPaperSize", module.getScanPaperSize);
  Bind(find, "PMGetScanError", module.getScanError);
  Bind(find, "PMSetScannerHardware", module.setScannerHardware);
  Bind(find, "PMEject", module.eject);
  Bind(find, "PMFeed", module.feed);
  Bind(find, "PMReset", module.reset);
  Bind(find, "PMSetFocus", module.setFocus);
  return module;
}

}  // namespace pmscan
