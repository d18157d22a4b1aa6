#pragma once

#include "simulator/extended/extended_scanner.h"
#include "tests/scans/scan_desk.h"

namespace pmddb832::tests {

// A small extended scanner, 64 x 48 pixels of flatbed at 600 dpi, with `onBed` on it.
simulator::ExtendedScannerConfig SmallExtendedScanner(simulator::Picture onBed);

using ExtendedDesk = ScanDesk<simulator::ExtendedScanner, simulator::ExtendedScannerConfig>;

}  // namespace pmddb832::tests
