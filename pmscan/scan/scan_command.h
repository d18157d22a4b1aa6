#pragma once

#include "interface/scanner_settings.h"
#include "pmscan/command_line/command_line.h"
#include "pmscan/devices/bed_teller.h"
#include "pmscan/report/json_report.h"
#include "pmscan/scan/module_exports.h"

namespace pmscan {

// Opens the scanner, scans into the files, and prints a summary on standard output, or puts it into
// `report` when the options ask for JSON; also one of what was saved before a failure. The settings
// name the device, and `bed` stands before the scanner. Throws Failure.
void RunScanCommand(const Options& options, const ModuleExports& module, const BedTeller& bed,
                    pmddb832::ScannerSettings& settings, Json& report);

// Opens the scanner and prepares the scan up to its start, which the device of the settings does
// not allow. Throws Failure; also when the start was prevented.
void PrepareScan(const Options& options, const ModuleExports& module, const BedTeller& bed,
                 pmddb832::ScannerSettings& settings);

// To be called before the scanner is touched. Throws Failure: kOutputFile when the files cannot
// be written, or the scan would replace one and may not; kUnsupported for a dry run of a scanner
// that is not simulated.
void RequireRunnable(const Options& options);

}  // namespace pmscan
