#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "pmscan/devices/bed_teller.h"
#include "pmscan/scan/scan_plan.h"
#include "pmscan/scan/session.h"
#include "simulator/device/page_scanner.h"
#include "tests/scans/pmscan_module.h"

namespace pmddb832::tests {

// A simulated scanner by family and level, with a bed of 0.86 x 0.5 inches; of the
// standard one it is 0.87 inches wide.
struct TestedScanner {
  std::string level;
  bool isExtended = false;
  std::uint8_t feederFlags = 0;  // with other than 0 there is a feeder, with one page
  std::string productName{};     // 16 characters; empty for one that nobody knows
  std::string modelId{};         // that the host gives
};

// The picture that pmscan writes of a scan.
struct WrittenPicture {
  pmscan::ScanPlan plan;
  std::vector<std::uint8_t> pixels;  // as the mode's layout has them
  std::size_t lineBytes = 0;
};

// pmscan, as far as it knows no Windows, with the module under test and such a scanner, open. The
// options are those of a grey scan of the bed at 150 dpi.
class PmscanDesk {
 public:
  PmscanDesk(const TestedScanner& tested, simulator::Picture document);

  // Scans one page. Throws pmscan::Failure.
  WrittenPicture Scan();

  void SetMode(const char* name) { options.mode = *pmscan::FindScanMode(name); }
  void SetArea(const pmscan::PixelArea& area);

  pmscan::Options options;
  ScannerSettings settings{};
  const ModuleUnderTest module;
  const pmscan::ModuleExports exports;
  std::unique_ptr<simulator::PageScanner> scanner;
  std::optional<pmscan::BedTeller> bed;
  std::optional<pmscan::Session> session;
};

}  // namespace pmddb832::tests
