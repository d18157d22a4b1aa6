#pragma once

#include <string_view>

#include "simulator/standard/standard_scanner.h"
#include "tests/scans/expected_row.h"
#include "tests/scans/whole_scan.h"

namespace pmddb832::tests {

// A small standard scanner, 64 x 48 pixels of flatbed at 600 dpi, with `onBed` on it.
simulator::StandardScannerConfig SmallStandardScanner(simulator::Picture onBed,
                                                      std::string_view level = "B8");

// The same with a bed of `width` x `height` pixels.
simulator::StandardScannerConfig StandardScannerOf(simulator::Picture onBed, std::uint32_t width,
                                                   std::uint32_t height);

// Part of the bed, in pixels at 600 dpi.
struct BedArea {
  std::uint32_t left = 0;
  std::uint32_t top = 0;
  std::uint32_t width = 64;
  std::uint32_t height = 48;
};

// A standard scanner, and a host that scans from it. At the end it checks that the module did
// nothing that the protocol does not allow.
class StandardDesk {
 public:
  explicit StandardDesk(simulator::StandardScannerConfig config, std::uint32_t pixelType = 5);
  ~StandardDesk();
  StandardDesk(const StandardDesk&) = delete;
  StandardDesk& operator=(const StandardDesk&) = delete;

  // Opens the scanner if it was not yet, and scans the area of the bed.
  ScannedImage Scan(const BedArea& area, std::uint32_t outputFormat = 5,
                    std::uint32_t bufferBytes = 0);

  // The image shows the area of the picture, in the row format of the host's pixel type.
  void CheckShows(const ScannedImage& image, const simulator::Picture& picture, const BedArea& area,
                  bool converts = true) const;

  const simulator::Picture onBed;
  simulator::StandardScanner scanner;
  WholeScan host;
  bool opened = false;
};

}  // namespace pmddb832::tests
