#include <doctest/doctest.h>

#include "tests/safety/calls_within_calls.h"

using namespace pmddb832::tests;

TEST_CASE(
    "no call from a device that reads for an extended scanner hurts the call under way or the "
    "next") {
  CheckCallsFrom(Place::kRead, {{"extended", 0}, {"extended:RV7000H+pages=2", 1}});
}

TEST_CASE(
    "no call from a device that writes for an extended scanner hurts the call under way or the "
    "next") {
  CheckCallsFrom(Place::kWrite, {{"extended", 0}, {"extended:RV7000H+pages=2", 1}});
}

TEST_CASE(
    "no call from the progress routine for an extended scanner hurts the call under way or the "
    "next") {
  CheckCallsFrom(Place::kProgress, {{"extended", 0}, {"extended:RV7000H+pages=2", 1}});
}

TEST_CASE(
    "no call from the window that is painted for an extended scanner hurts the call under way or "
    "the next") {
  CheckCallsFrom(Place::kRepaint, {{"extended", 0}, {"extended:RV7000H+pages=2", 1}});
}
