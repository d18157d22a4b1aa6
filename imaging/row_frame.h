#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "imaging/scan_line.h"

namespace pmddb832 {

// How one row is divided: converted pixels, fill pixels behind them, and, where the line or the row
// was too short for what was asked, white to the end of the row.
struct RowFrame {
  std::size_t converted;
  std::size_t filled;
  bool cutShort;

  constexpr bool IsConvertedOnly() const { return filled == 0 && !cutShort; }
};

// Divides a row of `rowPixels` for `wanted` pixels of which the line holds `linePixels`, and `fill`
// pixels behind them. Negative numbers count as 0.
constexpr RowFrame DivideRow(std::int64_t wanted, std::int64_t fill, std::size_t linePixels,
                             std::size_t rowPixels) {
  const auto toConvert = static_cast<std::size_t>(std::max<std::int64_t>(wanted, 0));
  const auto toFill = static_cast<std::size_t>(std::max<std::int64_t>(fill, 0));
  const std::size_t converted = std::min({toConvert, linePixels, rowPixels});
  if (converted < toConvert) return {converted, 0, true};
  const std::size_t filled = std::min(toFill, rowPixels - converted);
  return {converted, filled, filled < toFill};
}

// What stands behind the converted pixels.
struct RowFill {
  std::int32_t pixels;
  bool isWhite;  // else the last converted pixel again
};

// Writes everything of the row behind its converted pixels. The fill pixel is white, or a
// repetition of the `pixelBytes` bytes at `lastPixel`; 0 where that is null.
void FinishRow(HostRow row, const RowFrame& frame, std::size_t pixelBytes,
               const std::uint8_t* lastPixel, bool whiteFill);

// Finishes a row with the last converted pixel as its fill.
void FinishRow(HostRow row, const RowFrame& frame, std::size_t pixelBytes, bool whiteFill);

// Converts one row: `convert(source, destination, pixels)` writes `rowPixelBytes` bytes for each
// pixel of the line, which holds `linePixels` of them.
template <class Convert>
void ConvertRow(const ScanLine& line, HostRow row, RowFill fill, std::size_t linePixels,
                std::size_t rowPixelBytes, Convert convert) {
  const RowFrame frame = DivideRow(std::int64_t{line.pixelCount} - fill.pixels, fill.pixels,
                                   linePixels, row.size() / rowPixelBytes);
  convert(line.plane0.data(), row.data(), frame.converted);
  if (!frame.IsConvertedOnly()) FinishRow(row, frame, rowPixelBytes, fill.isWhite);
}

// Copies pixels of `pixelBytes` bytes unchanged.
void CopyRow(const ScanLine& line, HostRow row, RowFill fill, std::size_t pixelBytes);

}  // namespace pmddb832
