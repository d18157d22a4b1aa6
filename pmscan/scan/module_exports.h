#pragma once

#include <functional>
#include <tuple>

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

// A function of the module under its name.
template <class Function>
struct NamedExport {
  constexpr NamedExport(const char* exportName, Function ModuleExports::*exported)
      : name(exportName), member(exported) {}

  const char* name;
  Function ModuleExports::*member;
};

inline constexpr std::tuple kModuleExports{
    NamedExport{"PMOpenScanner", &ModuleExports::openScanner},
    NamedExport{"PMCloseScanner", &ModuleExports::closeScanner},
    NamedExport{"PMInitAcquire", &ModuleExports::initAcquire},
    NamedExport{"PMAcquireImage", &ModuleExports::acquireImage},
    NamedExport{"PMAbortScan", &ModuleExports::abortScan},
    NamedExport{"PMGetOptionStatus", &ModuleExports::getOptionStatus},
    NamedExport{"PMEnableOption", &ModuleExports::enableOption},
    NamedExport{"PMGetScanPaperSize", &ModuleExports::getScanPaperSize},
    NamedExport{"PMGetScanError", &ModuleExports::getScanError},
    NamedExport{"PMSetScannerHardware", &ModuleExports::setScannerHardware},
    NamedExport{"PMEject", &ModuleExports::eject},
    NamedExport{"PMFeed", &ModuleExports::feed},
    NamedExport{"PMReset", &ModuleExports::reset},
    NamedExport{"PMSetFocus", &ModuleExports::setFocus},
};

// Address of an export by its name, null when there is none.
using FindExport = std::function<void*(const char* name)>;

// Throws Failure(kModuleMissing) that names the first export that is not found.
ModuleExports BindExports(const FindExport& find);

}  // namespace pmscan
