#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "interface/scanner_settings.h"
#include "pmscan/scan/module_exports.h"
#include "pmscan/scan/scan_area.h"
#include "pmscan/scan/scan_source.h"

namespace pmscan {

// What the scanner told of one of its sources.
struct SourceFacts {
  ScanSource source;
  bool isFitted = false;
  BedSize size;                   // 0 x 0 when it is not told
  std::uint32_t widthPixels = 0;  // at the highest resolution; 0 when it is not told
  std::uint32_t heightPixels = 0;
  std::uint32_t status = 0;  // 0: ready, else a row of kErrorCodes
};

// What the scanner told of itself; texts without the blanks that fill their fields up.
struct ScannerFacts {
  std::string model;    // empty when the module does not know it
  std::string product;  // empty when the scanner does not tell it
  std::string level;    // "B8"
  bool isExtended = false;
  std::uint32_t lowestResolution = 0;  // dots per inch, likewise the others
  std::uint32_t highestResolution = 0;
  std::uint32_t basicResolution = 0;
  std::uint32_t halftones = 0;
  std::vector<SourceFacts> sources;
};

// The facts that the settings hold once the scanner is open, without those of the sources.
ScannerFacts ReadFacts(const pmddb832::ScannerSettings& settings);

// All facts: asks the module for the status and for the sizes in pixels, so the scanner is open;
// leaves ScannerSettings::scanSource at 0.
ScannerFacts AskScanner(const ModuleExports& module, pmddb832::ScannerSettings& settings);

}  // namespace pmscan
