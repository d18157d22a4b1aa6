#pragma once

#include "simulator/extended/extended_scanner.h"
#include "tests/scans/expected_row.h"
#include "tests/scans/whole_scan.h"

namespace pmddb832::tests {

// A small extended scanner, 64 x 48 pixels of flatbed at 600 dpi, with `onBed` on it.
simulator::ExtendedScannerConfig SmallExtendedScanner(simulator::Picture onBed);

}  // namespace pmddb832::tests
