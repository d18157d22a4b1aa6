#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "capture/file/capture.h"
#include "capture/replay/difference.h"
#include "transport/still_image_device.h"

namespace pmddb832::tests {

// Scans 40 x 30 pixels in colour at 300 dpi, and records it. A scan that fails is recorded up to
// its end. The times are 1 microsecond apart.
capture::Capture RecordScan(StillImageDevice& scanner, bool keepsImageData);

// What a replay against the module under test brought.
struct ReplayOutcome {
  std::vector<capture::Difference> differences;
  std::string report;
  std::vector<std::uint8_t> lines;  // of all pictures, one after another
};

ReplayOutcome ReplayCapture(const capture::Capture& capture, bool isTolerant);

// The capture as text and read again, so that its entries have lines.
capture::Capture ReadAgain(const capture::Capture& capture);
std::string TextOf(const capture::Capture& capture);
capture::Capture FromText(const std::string& text);

}  // namespace pmddb832::tests
