#pragma once

#include <cstdint>
#include <ctime>
#include <span>
#include <string>

#include "pmscan/scan/scan_mode.h"

namespace pmscan {

// Where a picture comes from, as far as its file can tell. PNG files tell nothing of one without
// software.
struct PictureOrigin {
  std::string scanner;
  std::string software;
  std::tm date{};  // local
};

// What all pages of a file have in common.
struct PageForm {
  PixelLayout layout = PixelLayout::kBgr24;
  std::uint32_t dotsPerInch = 0;
  std::uint32_t quality = 0;  // of JPEG, 1 to 100
  PictureOrigin origin;
};

// Writes pages into a file of some format, line by line from the top. Everything throws
// Failure(kOutputFile).
class PageEncoder {
 public:
  virtual ~PageEncoder() = default;
  PageEncoder(const PageEncoder&) = delete;
  PageEncoder& operator=(const PageEncoder&) = delete;

  // A page of so many pixels begins, of which there is at least one.
  virtual void BeginPage(std::uint32_t width, std::uint32_t height) = 0;

  // LineBytes(layout, width) bytes, as the layout has them.
  virtual void WriteLine(std::span<const std::uint8_t> line) = 0;

  // The page is as high as the lines that were written; with none, it is not in the file.
  virtual void EndPage(std::uint32_t lines) = 0;

  // All pages are there.
  virtual void Finish() {}

 protected:
  PageEncoder() = default;
};

constexpr std::uint32_t BitsPerPixel(PixelLayout layout) {
  switch (layout) {
    case PixelLayout::kBlackWhite:
      return 1;
    case PixelLayout::kGrey8:
    case PixelLayout::kPalette:
      return 8;
    case PixelLayout::kGrey16:
      return 16;
    case PixelLayout::kRgb48:
      return 48;
    default:
      return 24;
  }
}

constexpr std::uint32_t SamplesPerPixel(PixelLayout layout) {
  return layout == PixelLayout::kBgr24 || layout == PixelLayout::kRgb48 ? 3 : 1;
}

constexpr std::uint32_t BitsPerSample(PixelLayout layout) {
  return BitsPerPixel(layout) / SamplesPerPixel(layout);
}

constexpr std::size_t LineBytes(PixelLayout layout, std::uint32_t width) {
  return (std::size_t{width} * BitsPerPixel(layout) + 7) / 8;
}

}  // namespace pmscan
