#include "tests/scans/standard_scan.h"

#include <utility>

namespace pmddb832::tests {

simulator::StandardScannerConfig StandardDesk::Small(simulator::Picture onBed,
                                                     std::string_view level) {
  Config config;
  config.identity.level = level;
  config.identity.resolutions = {50, 100, 150, 300, 600};
  config.identity.flatbed = {64, 48};
  config.identity.feeder = {64, 96};
  config.identity.transparencyUnit = {40, 30};
  config.onBed = std::move(onBed);
  return config;
}

}  // namespace pmddb832::tests
