#include "pmscan/scan/scan_mode.h"

namespace pmscan {

const ScanMode* FindScanMode(std::string_view name) {
  for (const ScanMode& mode : kScanModes) {
    if (mode.name == name) return &mode;
  }
  return nullptr;
}

std::string ScanModeNames() {
  std::string names;
  for (const ScanMode& mode : kScanModes) {
    if (!names.empty()) names += ", ";
    names += mode.name;
  }
  return names;
}

}  // namespace pmscan
