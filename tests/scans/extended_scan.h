#pragma once

#include "simulator/extended/extended_scanner.h"
#include "tests/scans/scan_desk.h"

namespace pmddb832::tests {

struct ExtendedDesk : ScanDesk<simulator::ExtendedScanner, simulator::ExtendedScannerConfig> {
  using ScanDesk::ScanDesk;

  // A small scanner, 64 x 48 pixels of flatbed at 600 dpi, with `onBed` on it.
  static Config Small(simulator::Picture onBed);
};

}  // namespace pmddb832::tests
