#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "imaging/scan_line.h"

namespace pmddb832 {

// The rows that one call delivers.
struct Band {
  std::span<std::uint8_t> rows;  // `lines` of them
  std::uint32_t rowBytes;
  std::uint32_t lines;
  bool topDown;

  // The row of a line, and those of the lines behind it.
  HostRows RowsFrom(std::uint32_t line) const {
    const std::size_t row = topDown ? line : lines - 1 - line;
    const auto step = static_cast<std::ptrdiff_t>(rowBytes);
    return {rows.subspan(row * rowBytes, rowBytes), topDown ? step : -step};
  }
};

// Whole rows that fit into a buffer; the low 16 bits of their number.
constexpr std::uint32_t LinesThatFit(std::uint32_t bufferBytes, std::uint32_t rowBytes) {
  return static_cast<std::uint16_t>(bufferBytes / rowBytes);
}

// Fills a band: `report(line)` on every `linesPerReport` lines, which are not 0 where the band has
// any, then `next(scanLines, most)`, which fetches the line and up to `most` with it or ends the
// band with false, then `convert(scanLines, rows)`.
template <class Report, class Next, class Convert>
[[nodiscard]] bool DeliverBand(const Band& band, std::uint32_t linesPerReport, Report report,
                               Next next, Convert convert) {
  ScanLines lines;
  for (std::uint32_t i = 0; i < band.lines; i += lines.count) {
    const std::uint32_t reported = i % linesPerReport;
    if (reported == 0) report(i);
    if (!next(lines, std::min(linesPerReport - reported, band.lines - i))) return false;
    convert(lines, band.RowsFrom(i));
  }
  return true;
}

// Percentage of an image; all of one without lines.
inline constexpr std::uint32_t kAllDone = 100;

constexpr std::uint32_t PercentDone(std::uint32_t lines, std::uint32_t height) {
  return height == 0 ? kAllDone : lines * kAllDone / height;
}

}  // namespace pmddb832
