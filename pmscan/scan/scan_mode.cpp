#include "pmscan/scan/scan_mode.h"

#include "pmscan/command_line/named_rows.h"

namespace pmscan {

const ScanMode* FindScanMode(std::string_view name) {
  return FindByName(kScanModes, name);
}

std::string ScanModeNames() {
  return NamesOf(kScanModes);
}

}  // namespace pmscan
