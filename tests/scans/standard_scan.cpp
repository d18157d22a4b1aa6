#include "tests/scans/standard_scan.h"

#include <doctest/doctest.h>

#include <utility>

namespace pmddb832::tests {

simulator::StandardScannerConfig SmallStandardScanner(simulator::Picture onBed,
                                                      std::string_view level) {
  simulator::StandardScannerConfig config;
  config.identity.level = level;
  config.identity.resolutions = {50, 100, 150, 300, 600};
  config.identity.flatbed = {64, 48};
  config.identity.feeder = {64, 96};
  config.identity.transparencyUnit = {40, 30};
  config.onBed = std::move(onBed);
  return config;
}

simulator::StandardScannerConfig StandardScannerOf(simulator::Picture onBed, std::uint32_t width,
                                                   std::uint32_t height) {
  simulator::StandardScannerConfig config = SmallStandardScanner(std::move(onBed));
  config.identity.flatbed = config.identity.feeder = {width, height};
  return config;
}

StandardDesk::StandardDesk(simulator::StandardScannerConfig config, std::uint32_t pixelType)
    : onBed(config.onBed), scanner(std::move(config)), host(scanner) {
  host.settings.pixelType = pixelType;
}

StandardDesk::~StandardDesk() {
  CHECK(Violations(scanner) == "");
}

ScannedImage StandardDesk::Scan(const BedArea& area, std::uint32_t outputFormat,
                                std::uint32_t bufferBytes) {
  if (!std::exchange(opened, true)) REQUIRE(host.Open());
  host.SetArea(area.left, area.top, area.width, area.height);
  return host.Acquire(outputFormat, bufferBytes);
}

void StandardDesk::CheckShows(const ScannedImage& image, const simulator::Picture& picture,
                              const BedArea& area, bool converts) const {
  CHECK(image.error == 0);
  REQUIRE(image.rows.size() == area.height);
  for (std::uint32_t y = 0; y < area.height; ++y) {
    const auto expected = ExpectedRow(picture, host.settings.pixelType, converts, area.left,
                                      area.top + y, area.width);
    CAPTURE(y);
    CHECK(First(image.rows[y], expected.size()) == expected);
  }
}

}  // namespace pmddb832::tests
