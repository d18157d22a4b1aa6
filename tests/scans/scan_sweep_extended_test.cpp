#include <doctest/doctest.h>

#include "tests/scans/scan_sweep.h"

// What pmscan makes of a scan is what lies on the bed, pixel by pixel: extended commands.

using pmddb832::tests::Sweep;

namespace {

const std::vector<std::uint32_t> kResolutions{50, 75, 111, 300};

}  // namespace

// A scanner of level B3 does not tell the size of its bed.
TEST_CASE("sweep: pictures of levels B4 to B8 with extended commands are what the bed holds") {
  for (const char* level : {"B4", "B5", "B6", "B7", "B8"}) Sweep({level, true, kResolutions});
}

TEST_CASE("sweep: pictures of a scanner with deep samples of 14 bits are what the bed holds") {
  for (const char* product : {"SCANNER RV-3100 ", "Prospectra3140XL"}) {
    Sweep({"B8", true, kResolutions, product, 14});
  }
}
