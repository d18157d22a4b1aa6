#pragma once

#include <cstdint>

#include "capture/file/capture.h"

namespace pmddb832::tests {

// A scan of some scanner with some defect, and some edits of what was recorded: transfers that are
// left out or repeated, cut short or failed, bytes that are flipped, data that were not kept, calls
// in between, an end before the end. The same number gives the same capture. It begins with a whole
// command, so that the dissector knows the device for a scanner.
capture::Capture RandomCapture(std::uint32_t number);

}  // namespace pmddb832::tests
