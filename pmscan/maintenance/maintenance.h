#pragma once

#include <string>

#include "interface/scanner_settings.h"
#include "pmscan/report/json_report.h"
#include "pmscan/scan/module_exports.h"
#include "pmscan/settings/focus.h"

// What can be asked of a scanner besides scans. Each opens the scanner that the settings name and
// closes it again, tells in `report` what scanner it is, returns a sentence on what was done, and
// throws Failure.
namespace pmscan {

// Automatic focus looks at the whole bed. `report` gets the position too.
std::string FocusScanner(const ModuleExports& module, pmddb832::ScannerSettings& settings,
                         const Focus& focus, Json& report);

std::string FeedPage(const ModuleExports& module, pmddb832::ScannerSettings& settings,
                     Json& report);

// The module ejects only behind a scan, so one line of the bed is scanned before.
std::string EjectPage(const ModuleExports& module, pmddb832::ScannerSettings& settings,
                      Json& report);

std::string ResetScanner(const ModuleExports& module, pmddb832::ScannerSettings& settings,
                         Json& report);

}  // namespace pmscan
