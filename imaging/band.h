#pragma once

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

  HostRow Row(std::uint32_t line) const {
    const std::size_t row = topDown ? line : lines - 1 - line;
    return rows.subspan(row * rowBytes, rowBytes);
  }
};

// Whole rows that fit into a buffer; the low 16 bits of their number.
constexpr std::uint32_t LinesThatFit(std::uint32_t bufferBytes, std::uint32_t rowBytes) {
  return static_cast<std::uint16_t>(bufferBytes / rowBytes);
}

// Fills a band line by line: `report(line)` on every few lines, then `next(scanLine)`, which
// fetches the line or ends the band with false, then `convert(scanLine, row)`.
template <std::uint32_t linesPerReport, class Report, class Next, class Convert>
[[nodiscard]] bool DeliverBand(const Band& band, Report report, Next next, Convert convert) {
  ScanLine line;
  for (std::uint32_t i = 0; i < band.lines; ++i) {
    if (i % linesPerReport == 0) report(i);
    if (!next(line)) return false;
    convert(line, band.Row(i));
  }
  return true;
}

// Percentage of an image; all of one without lines.
inline constexpr std::uint32_t kAllDone = 100;

constexpr std::uint32_t PercentDone(std::uint32_t lines, std::uint32_t height) {
  return height == 0 ? kAllDone : lines * kAllDone / height;
}

}  // namespace pmddb832
