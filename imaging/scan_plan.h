#pragma once

#include <cstdint>

#include "imaging/pixel_format.h"

namespace pmddb832 {

struct ScannerSettings;

// A scan as the host asked for it, and what of it is sent. Areas are in pixels and lines at the
// scan resolution.
struct ScanPlan {
  std::uint32_t outputFormat = 0;  // the host's pixel type for the delivered image
  bool reorder = false;            // the host wants its colours reordered
  std::uint32_t pixelType = 0;
  PixelFormat format{0, 0, 1, 1};
  std::uint32_t left = 0;
  std::uint32_t top = 0;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint32_t hostLineBytes = 0;  // of one host row; 0 while no scan is set up

  std::uint32_t sentLeft = 0;
  std::uint32_t sentWidth = 0;
  std::uint16_t padPixels = 0;  // requested pixels that are not sent, or sent ones not requested
};

// Takes the area of the settings.
void TakeArea(ScanPlan& plan, const ScannerSettings& settings);

// Whether the rows of a band are delivered from the top, for the output format; else they are
// delivered from the bottom.
constexpr bool IsTopDown(std::uint32_t outputFormat) {
  return outputFormat == 1 || outputFormat == 3 || outputFormat == 5 || outputFormat == 6;
}

// Colours are reordered for every output format but this one.
inline constexpr std::uint32_t kPlainOutputFormat = 1;

}  // namespace pmddb832
