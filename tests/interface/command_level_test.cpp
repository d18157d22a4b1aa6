#include "transport/command_level.h"

#include <doctest/doctest.h>

namespace pmddb832::tests {

TEST_CASE("the level group is 4 for level 1, 5 for levels 2 to 4, else 6") {
  const std::uint16_t groups[] = {6, 4, 5, 5, 5, 6, 6, 6, 6};
  for (std::uint32_t level = 0; level < 9; ++level) {
    CAPTURE(level);
    ScannerSettings settings{};
    StoreLevelGroupAndRange(settings, level);
    CHECK(settings.levelGroup == groups[level]);
  }
}

TEST_CASE("the range is enabled, from 50 to 200") {
  ScannerSettings settings{};
  StoreLevelGroupAndRange(settings, 8);
  CHECK(settings.rangeEnabled == 1);
  CHECK(settings.rangeMin == 50);
  CHECK(settings.rangeMax == 200);
}

}  // namespace pmddb832::tests
