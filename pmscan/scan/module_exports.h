#pragma once

#include <functional>

#include "interface/exports.h"

namespace pmscan {

// The functions of the module; the prototypes are those of interface/exports.h.
struct ModuleExports {
  decltype(&PMOpenScanner) openScanner = nullptr;
  decltype(&PMCloseScanner) closeScanner = nullptr;
  decltype(&PMInitAcquire) initAcquire = nullptr;
  decltype(&PMAcquireImage) acquireImage = nullptr;
  decltype(&PMAbortScan) abortScan = nullptr;
  decltype(&PMGetOptionStatus) getOptionStatus = nullptr;
  decltype(&PMEnableOption) enableOption = nullptr;
  decltype(&PMGetScanPaperSize) getScanPaperSize = nullptr;
  decltype(&PMGetScanError) getScanError = nullptr;
  decltype(&PMSetScannerHardware) setScannerHardware = nullptr;
  decltype(&PMEject) eject = nullptr;
  decltype(&PMFeed) feed = nullptr;
  decltype(&PMReset) reset = nullptr;
  decltype(&PMSetFocus) setFocus = nullptr;
};

// Address of an export by its name, null when there is none.
using FindExport = std::function<void*(const char* name)>;

// Throws Failure(kModuleMissing) that names the first export that is not found.
ModuleExports BindExports(const FindExport& find);

}  // namespace pmscan
