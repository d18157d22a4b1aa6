#pragma once

#include <cstdint>
#include <initializer_list>

#include "tests/safety/interrupted_host.h"

// The host's code runs within calls of the module: in the transfers of its device, in its progress
// routine and in the painting of its window.

namespace pmddb832::tests {

struct InterruptedSubject {
  const char* name;     // of the simulated scanner
  std::uint8_t source;  // ScannerSettings::scanSource
};

// Calls every export, and some pairs of them, at each moment of a whole session with each scanner
// at which the host's code runs, in all four places. The call under way must end with the result
// that it would have had or fail with a code that is due, the next call must see what the
// interruption has changed, and behind the session a close, an open and a scan must give the right
// picture.
void CheckCallsWithin(std::initializer_list<InterruptedSubject> subjects);

}  // namespace pmddb832::tests
