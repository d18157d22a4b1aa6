#include <doctest/doctest.h>

#include "tests/safety/calls_within_calls.h"

TEST_CASE("no call from within a call for an extended scanner hurts it or the next one") {
  pmddb832::tests::CheckCallsWithin({{"extended", 0}, {"extended:RV7000H+pages=2", 1}});
}
