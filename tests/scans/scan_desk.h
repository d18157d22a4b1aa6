#pragma once

#include <doctest/doctest.h>

#include <utility>

#include "tests/scans/expected_row.h"
#include "tests/scans/whole_scan.h"

namespace pmddb832::tests {

// Part of the bed, in pixels at 600 dpi.
struct BedArea {
  std::uint32_t left = 0;
  std::uint32_t top = 0;
  std::uint32_t width = 64;
  std::uint32_t height = 48;
};

// A scanner, and a host that scans from it. At the end it checks that the module did nothing that
// the protocol does not allow.
template <class Scanner, class ScannerConfig>
class ScanDesk {
 public:
  using Config = ScannerConfig;

  explicit ScanDesk(Config config, std::uint32_t pixelType = 5)
      : onBed(config.onBed), scanner(std::move(config)), host(scanner) {
    host.settings.pixelType = pixelType;
  }
  ~ScanDesk() { CHECK(Violations(scanner) == ""); }
  ScanDesk(const ScanDesk&) = delete;
  ScanDesk& operator=(const ScanDesk&) = delete;

  void Open() {
    REQUIRE(host.Open());
    opened = true;
  }

  // The same; scans are then those of the option unit.
  void OpenFromOption() {
    Open();
    host.settings.scanSource = 1;
  }

  // Opens the scanner if it was not yet, and scans the area of the bed.
  ScannedImage Scan(const BedArea& area, std::uint32_t outputFormat = 5,
                    std::uint32_t bufferBytes = 0) {
    if (!opened) Open();
    host.SetArea(area.left, area.top, area.width, area.height);
    return host.Acquire(outputFormat, bufferBytes);
  }

  // The same, and the image must have as many rows.
  ScannedImage ScanWhole(const BedArea& area, std::uint32_t outputFormat = 5) {
    ScannedImage image = Scan(area, outputFormat);
    REQUIRE(image.rows.size() == area.height);
    return image;
  }

  // The image shows the area of the picture, in the row format of the host's pixel type.
  void CheckShows(const ScannedImage& image, const simulator::Picture& picture, const BedArea& area,
                  bool converts = true) const {
    CHECK(image.error == 0);
    REQUIRE(image.rows.size() == area.height);
    for (std::uint32_t y = 0; y < area.height; ++y) {
      const auto expected = ExpectedRow(picture, host.settings.pixelType, converts, area.left,
                                        area.top + y, area.width);
      CAPTURE(y);
      CHECK(First(image.rows[y], expected.size()) == expected);
    }
  }

  const simulator::Picture onBed;
  Scanner scanner;
  WholeScan host;
  bool opened = false;
};

// A scanner of the desk's family whose bed and feeder are as large as the picture on the bed.
template <class Desk>
typename Desk::Config ScannerFor(simulator::Picture onBed) {
  typename Desk::Config config = Desk::Small(std::move(onBed));
  config.identity.flatbed = {config.onBed.width, config.onBed.height};
  config.identity.feeder = config.identity.flatbed;
  return config;
}

}  // namespace pmddb832::tests
