#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "simulator/page/picture.h"

namespace simulator {

// A scanned pixel is the mean of the picture's pixels whose centres lie inside its footprint, a
// square of 1/dotsPerInch of the scan, or the picture's pixel in the middle of it when there is
// none. The mean is rounded half up. Around the picture the bed is white without end.

// The pixel (red, green, blue) in column `x` and line `y`, counted from the picture's top left at
// `dotsPerInch`: the rule, written down plainly, one pixel at a time.
std::array<std::uint16_t, 3> ScannedPixel(const Picture& picture, std::uint32_t dotsPerInch,
                                          std::uint32_t x, std::uint32_t y);

// The same, a line at a time and fast. The picture must outlive the sampler.
class LineSampler {
 public:
  LineSampler(const Picture& scanned, std::uint32_t dotsPerInch, std::uint32_t left,
              std::uint32_t width);

  // Line `y` of the columns left to left + width - 1: three samples a pixel. Valid until the next
  // call.
  const std::vector<std::uint16_t>& Line(std::uint32_t y);

 private:
  // The picture's columns, or rows, from `first` to before `end`.
  struct Span {
    std::uint64_t first = 0;
    std::uint64_t end = 0;
    bool operator==(const Span&) const = default;
  };
  Span Footprint(std::uint32_t scanned) const;
  void SumRows(Span rows);
  void MeanOfColumns(std::uint64_t rows);

  const Picture& picture_;
  std::uint32_t dotsPerInch_;
  std::vector<Span> columns_;
  Span lastRows_;
  std::vector<std::uint64_t> sums_;  // over the rows of the footprint, for each sample of a row
  std::vector<std::uint16_t> line_;
};

}  // namespace simulator
