#include "tests/scans/standard_scan.h"

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

}  // namespace pmddb832::tests
