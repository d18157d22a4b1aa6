#pragma once

#include "interface/scanner_settings.h"
#include "pmscan/scan/module_exports.h"
#include "pmscan/scan/scan_source.h"

namespace pmscan {

// An open scanner: opened and identified by the constructor, closed by the destructor. The module
// and the settings outlive it.
class Session {
 public:
  // Throws Failure with the module's code when the scanner does not open.
  Session(const ModuleExports& moduleExports, pmddb832::ScannerSettings& scannerSettings);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Makes the source that of the next scan; it need not be ready. Throws Failure with the module's
  // code.
  void Select(const ScanSource& source);

 private:
  const ModuleExports& module_;
  pmddb832::ScannerSettings& settings_;
};

}  // namespace pmscan
