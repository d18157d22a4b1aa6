#pragma once

#include <string_view>

#include "simulator/standard/standard_scanner.h"
#include "tests/scans/scan_desk.h"

namespace pmddb832::tests {

// A small standard scanner, 64 x 48 pixels of flatbed at 600 dpi, with `onBed` on it.
simulator::StandardScannerConfig SmallStandardScanner(simulator::Picture onBed,
                                                      std::string_view level = "B8");

// The same with a bed of `width` x `height` pixels.
simulator::StandardScannerConfig StandardScannerOf(simulator::Picture onBed, std::uint32_t width,
                                                   std::uint32_t height);

using StandardDesk = ScanDesk<simulator::StandardScanner, simulator::StandardScannerConfig>;

}  // namespace pmddb832::tests
