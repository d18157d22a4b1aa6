#pragma once

#include <cstdint>

#include "interface/scanner_settings.h"
#include "pmscan/command_line/command_line.h"
#include "pmscan/scan/line_window.h"
#include "pmscan/scan/scan_request.h"

namespace pmscan {

// What the user wants, and what the module is asked for so that it comes out right.
//
// Most scans come in whole groups of eight pixels. Where a group would reach beyond the bed the
// module delivers something else in its place, and a mirrored line is shifted. So the area that the
// module is asked for is made of whole groups and lies on the bed, and the picture is cut out of
// its lines. Of a picture as wide as the bed only the pixels of an incomplete last group are
// missing. Where the scanner cannot mirror, the lines are flipped here.
struct ScanPlan {
  ScanRequest picture;
  ScanRequest asked;
  LineWindow window;
  std::uint32_t missing = 0;    // pixels of a last group, which cannot be had
  std::uint8_t sampleBits = 0;  // of the samples in deep pictures, which are the highest of 16
};

// How many bits the samples of deep pictures have that the scanner delivers.
std::uint8_t DeepBits(const pmddb832::ScannerSettings& settings);

// The scan that the options want of the scanner that the settings tell of, once it is open. Throws
// Failure when it cannot be had.
ScanPlan PlanScan(const Options& options, const pmddb832::ScannerSettings& settings);

}  // namespace pmscan
