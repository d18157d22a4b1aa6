#include "tests/scans/extended_scan.h"

#include <utility>

namespace pmddb832::tests {

simulator::ExtendedScannerConfig ExtendedDesk::Small(simulator::Picture onBed) {
  Config config;
  config.identity.flatbed = {64, 48};
  config.identity.feeder = {64, 96};
  config.identity.transparencyUnit = {40, 30};
  config.onBed = std::move(onBed);
  return config;
}

}  // namespace pmddb832::tests
