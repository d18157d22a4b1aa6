#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

namespace pmddb832 {

// One raw scan line, as the scanner delivered it. The planes reach to the end of what was received,
// which may be beyond the line or short of it. Valid until the next line is fetched.
struct ScanLine {
  std::int32_t pixelCount = 0;           // pixels, padding included; bytes for the 1-bit type
  std::span<const std::uint8_t> plane0;  // the line's data, or its first colour plane
  std::span<const std::uint8_t> plane1;  // Pix256Color only
  std::span<const std::uint8_t> plane2;  // Pix256Color only
};

// A line and those behind it that are converted like it, because nobody can ask for anything else
// before they are: no transfer lies between them, no progress is told, and there is no log.
struct ScanLines {
  // NOLINTNEXTLINE(google-explicit-constructor) A line is a run of one.
  ScanLines(const ScanLine& line) : first(line) {}
  ScanLines() = default;

  ScanLine first;
  std::uint32_t count = 1;
  std::uint32_t lineBytes = 0;  // from one line to the next
};

// One row of the host's image: the line bytes that were announced, alignment included.
using HostRow = std::span<std::uint8_t>;

// A row and those that follow it, upwards or downwards.
struct HostRows {
  // NOLINTNEXTLINE(google-explicit-constructor) A row is a run of one.
  HostRows(HostRow row, std::ptrdiff_t toNext = 0) : first(row), step(toNext) {}

  HostRow Row(std::uint32_t i) const {
    return {first.data() + step * static_cast<std::ptrdiff_t>(i), first.size()};
  }

  HostRow first;
  std::ptrdiff_t step;  // from one row to the next, in bytes
};

// How many of `most` lines lie whole in a block, of which `bytes` are from the first line on. At
// least the first one, whole or not.
constexpr std::uint32_t WholeLines(std::size_t bytes, std::uint32_t lineBytes, std::uint32_t most) {
  if (most <= 1 || lineBytes == 0 || bytes / lineBytes <= 1) return 1;
  return static_cast<std::uint32_t>(std::min<std::size_t>(bytes / lineBytes, most));
}

}  // namespace pmddb832
