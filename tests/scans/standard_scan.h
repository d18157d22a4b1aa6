#pragma once

#include <string_view>

#include "simulator/standard/standard_scanner.h"
#include "tests/scans/scan_desk.h"

namespace pmddb832::tests {

struct StandardDesk : ScanDesk<simulator::StandardScanner, simulator::StandardScannerConfig> {
  using ScanDesk::ScanDesk;

  // A small scanner, 64 x 48 pixels of flatbed at 600 dpi, with `onBed` on it.
  static Config Small(simulator::Picture onBed, std::string_view level = "B8");
};

}  // namespace pmddb832::tests
