#include <doctest/doctest.h>

#include "tests/safety/calls_within_calls.h"

using namespace pmddb832::tests;

TEST_CASE(
    "no call from a device that reads for a standard feeder hurts the call under way or the next") {
  CheckCallsFrom(Place::kRead, {{"standard:QM5500+pages=2", 1}});
}

TEST_CASE(
    "no call from a device that writes for a standard feeder hurts the call under way or the "
    "next") {
  CheckCallsFrom(Place::kWrite, {{"standard:QM5500+pages=2", 1}});
}

TEST_CASE(
    "no call from the progress routine for a standard feeder hurts the call under way or the "
    "next") {
  CheckCallsFrom(Place::kProgress, {{"standard:QM5500+pages=2", 1}});
}

TEST_CASE(
    "no call from the window that is painted for a standard feeder hurts the call under way or the "
    "next") {
  CheckCallsFrom(Place::kRepaint, {{"standard:QM5500+pages=2", 1}});
}
