#include <doctest/doctest.h>

#include "tests/safety/calls_within_calls.h"

TEST_CASE("no call from within a call for a standard scanner hurts it or the next one") {
  pmddb832::tests::CheckCallsWithin({{"standard", 0}});
}
