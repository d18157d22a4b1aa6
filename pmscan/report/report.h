#pragma once

#include <optional>
#include <string>
#include <vector>

#include "pmscan/report/scanner_facts.h"
#include "pmscan/scan/batch.h"
#include "pmscan/scan/scan_request.h"
#include "pmscan/scan/scan_source.h"

namespace pmscan {

// What became of a scan.
struct ScanOutcome {
  std::vector<SavedPage> pages;
  std::vector<SavedFile> files;
  std::string formatName;
  std::optional<BatchEnd> end;  // nothing when it failed or was interrupted
  double seconds = 0;
};

// "QM2700 (SCANNER QM-2700)": the model's name and the product name, as far as they are known.
std::string ModelText(const ScannerFacts& scanner);

// Summary of a scan, a line for each fact.
std::string ScanReport(const ScannerFacts& scanner, const ScanSource& source,
                       const ScanRequest& request, const ScanOutcome& outcome);

// What the scanner told of itself, and the status of each source.
std::string ScannerReport(const ScannerFacts& scanner);

}  // namespace pmscan
