#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "pmscan/report_page/captured_pages.h"

namespace pmscan {

using RgbPixel = std::array<std::uint8_t, 3>;

// Whether pictures of the shape have one sample a pixel.
bool IsGrey(const PictureShape& shape);

// Reads the lines of a picture as the scanner sends them, in front of all that the module does with
// them. Of samples of more than 8 bits the high ones are taken; those of fewer are spread from 0 to
// 255.
class RawPixels {
 public:
  // `lineBytes` is the length of every line, which may be another than the shape asks for.
  RawPixels(const PictureShape& pictureShape, std::uint64_t lineBytes);

  // The pixel of a line, from 0; white where the line is too short for it.
  RgbPixel At(std::span<const std::uint8_t> line, std::uint32_t x) const;

 private:
  using Reader = RgbPixel (*)(const PictureShape& shape, std::span<const std::uint8_t> line,
                              std::uint32_t x);
  static Reader ReaderOf(const PictureShape& shape, std::uint64_t lineBytes);

  PictureShape shape_;
  Reader reader_;
};

}  // namespace pmscan
