#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "imaging/row_kernels.h"
#include "imaging/scan_line.h"

namespace pmddb832 {

// How one row is divided: converted pixels, fill pixels behind them, and, where the line or the row
// was too short for what was asked, white to the end of the row.
struct RowFrame {
  std::size_t converted;
  std::size_t filled;
  bool cutShort;

  constexpr bool operator==(const RowFrame&) const = default;
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

// Calls `convert(frame, offset, row)` for each row, with how far in the planes its line begins.
// `divide(bytes)` is how a row is divided that so many bytes of its plane are left for: as the
// first one is and the last one, so are those between.
template <class Divide, class Convert>
void ForEachRow(const ScanLines& lines, const HostRows& rows, std::size_t planeBytes, Divide divide,
                Convert convert) {
  const auto offset = [&](std::uint32_t i) {
    return std::min(planeBytes, std::size_t{i} * lines.lineBytes);
  };
  const auto left = [&](std::uint32_t i) { return planeBytes - offset(i); };
  const RowFrame first = divide(left(0));
  const bool alike = lines.count == 1 || divide(left(lines.count - 1)) == first;
  for (std::uint32_t i = 0; i < lines.count; ++i) {
    convert(alike ? first : divide(left(i)), offset(i), rows.Row(i));
  }
}

// What pixels take: one has `rowBytes` bytes in a row, and `pixels` have `lineBytes` in a line.
struct PixelBytes {
  std::size_t rowBytes;
  std::size_t lineBytes;
  std::size_t pixels = 1;
};

// Converts units of a row; without a kernel their `bytes` bytes are copied.
inline void ConvertUnits(RowKernel convert, const std::uint8_t* from, std::uint8_t* to,
                         std::size_t units, std::size_t bytes) {
  if (convert != nullptr) {
    convert(from, to, units);
  } else if (bytes > 0) {
    std::memcpy(to, from, bytes);
  }
}

// Converts rows, those of one line at a time; without a kernel they are copied.
void ConvertRows(const ScanLines& lines, const HostRows& rows, RowFill fill,
                 const PixelBytes& bytes, RowKernel convert);

// Copies pixels of `pixelBytes` bytes unchanged.
void CopyRows(const ScanLines& lines, const HostRows& rows, RowFill fill, std::size_t pixelBytes);

}  // namespace pmddb832
