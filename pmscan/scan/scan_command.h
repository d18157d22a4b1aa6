#pragma once

#include "interface/scanner_settings.h"
#include "pmscan/command_line/command_line.h"
#include "pmscan/command_line/progress.h"
#include "pmscan/devices/bed_teller.h"
#include "pmscan/report/json_report.h"
#include "pmscan/scan/module_exports.h"

namespace pmscan {

// What a command runs with besides the scanner that the settings name, which `bed` stands before.
struct Surroundings {
  const ModuleExports& module;
  const BedTeller& bed;
  ProgressMeter& progress;
};

// What is awaited before the first page.
inline constexpr const char* kPreparing = "Preparing the scan";

// How the command tells its progress.
ProgressStyle StyleFor(const Options& options);

// Opens the scanner, scans into the files, and prints a summary on standard output, or puts it into
// `report` when the options ask for JSON; also one of what was saved before a failure. Ctrl+C is
// caught. Throws Failure.
void RunScanCommand(const Options& options, const Surroundings& with,
                    pmddb832::ScannerSettings& settings, Json& report);

// Opens the scanner and prepares the scan up to its start, which the device of the settings does
// not allow. Throws Failure; also when the start was prevented.
void PrepareScan(const Options& options, const Surroundings& with,
                 pmddb832::ScannerSettings& settings);

// To be called before the scanner is touched. Throws Failure: kOutputFile when the files cannot
// be written, or the scan would replace one and may not; kUnsupported for a dry run of a scanner
// that is not simulated.
void RequireRunnable(const Options& options);

}  // namespace pmscan
