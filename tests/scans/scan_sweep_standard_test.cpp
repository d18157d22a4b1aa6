#include <doctest/doctest.h>

#include "tests/scans/scan_sweep.h"

// What pmscan makes of a scan is what lies on the bed, pixel by pixel: standard commands.

using pmddb832::tests::Sweep;

namespace {

const std::vector<std::uint32_t> kResolutions{50, 75, 150, 300, 600};

}  // namespace

TEST_CASE("sweep: pictures of levels without a mirror command are what the bed holds") {
  for (const char* level : {"B3", "B4"}) Sweep({level, false, kResolutions});
}

TEST_CASE("sweep: pictures of levels A5, B5 and B6 are what the bed holds") {
  for (const char* level : {"A5", "B5", "B6"}) Sweep({level, false, kResolutions});
}

TEST_CASE("sweep: pictures of levels B7, B8 and B9 are what the bed holds") {
  for (const char* level : {"B7", "B8", "B9"}) Sweep({level, false, kResolutions});
}
