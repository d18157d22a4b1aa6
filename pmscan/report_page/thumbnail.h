#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "pmscan/report_page/captured_pages.h"

namespace pmscan {

// Of a thumbnail's width and height, in pixels.
inline constexpr std::uint32_t kLongestSide = 640;

// A page made smaller: as wide as the page, and as high as the lines from its top whose bytes the
// capture kept.
struct Thumbnail {
  std::uint32_t width = 0;  // pixels
  std::uint32_t height = 0;
  std::uint32_t divisor = 1;  // of width and height; each pixel is the mean of a square of so many
  std::uint64_t lines = 0;    // of the page that it shows
  bool isGrey = false;
  std::vector<std::uint8_t> samples;  // grey, or blue, green and red
};

// Nothing is shown, and there are no samples, where the scanner was told no width, the blocks tell
// no lines, or no bytes were kept. Neither width nor height goes beyond `longest`: lines below the
// page's height are left out.
Thumbnail Shrink(const CapturedPage& page, std::uint32_t longest = kLongestSide);

// As a PNG file within an address: "data:image/png;base64,...". Empty for one without samples.
std::string DataAddress(const Thumbnail& thumbnail);

}  // namespace pmscan
