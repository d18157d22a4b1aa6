#include <doctest/doctest.h>

#include "tests/safety/calls_within_calls.h"

using namespace pmddb832::tests;

TEST_CASE(
    "no call from a device that reads for a standard scanner hurts the call under way or the "
    "next") {
  CheckCallsFrom(Place::kRead, {{"standard", 0}});
}

TEST_CASE(
    "no call from a device that writes for a standard scanner hurts the call under way or the "
    "next") {
  CheckCallsFrom(Place::kWrite, {{"standard", 0}});
}

TEST_CASE(
    "no call from the progress routine for a standard scanner hurts the call under way or the "
    "next") {
  CheckCallsFrom(Place::kProgress, {{"standard", 0}});
}

TEST_CASE(
    "no call from the window that is painted for a standard scanner hurts the call under way or "
    "the next") {
  CheckCallsFrom(Place::kRepaint, {{"standard", 0}});
}
