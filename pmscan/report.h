#pragma once

#include <cstdint>
#include <string>

#include "interface/scanner_settings.h"
#include "pmscan/module_exports.h"
#include "pmscan/scan_request.h"
#include "pmscan/scan_source.h"

namespace pmscan {

// What became of a scan.
struct ScanOutcome {
  std::string file;
  std::string formatName;
  std::uint64_t fileBytes = 0;
  double seconds = 0;
};

// "QM2700 (SCANNER QM-2700)": the model's name and the product name, as far as they are known.
std::string ModelText(const pmddb832::ScannerSettings& settings);

// Summary of a scan, a line for each fact.
std::string ScanReport(const pmddb832::ScannerSettings& settings, const ScanSource& source,
                       const ScanRequest& request, const ScanOutcome& outcome);

// What the scanner told of itself, and the status of each source. Asks the module for the status
// and for the sizes in pixels, so the scanner is open; leaves ScannerSettings::scanSource at 0.
std::string ScannerReport(const ModuleExports& module, pmddb832::ScannerSettings& settings);

}  // namespace pmscan
