#pragma once

#include "interface/scanner_settings.h"
#include "pmscan/command_line.h"
#include "pmscan/module_exports.h"

namespace pmscan {

// Opens the scanner, scans into the file, and prints a summary on standard output. The settings
// name the device. Throws Failure.
void RunScanCommand(const Options& options, const ModuleExports& module,
                    pmddb832::ScannerSettings& settings);

}  // namespace pmscan
