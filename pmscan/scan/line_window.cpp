#include "pmscan/scan/line_window.h"

#include <algorithm>

namespace pmscan {

void WindowSink::Write(std::span<const std::uint8_t> rows, std::uint32_t lineBytes,
                       std::uint32_t lines) {
  const std::uint32_t cutBytes = (window_.width * window_.bitsPerPixel + 7) / 8;
  cut_.assign(std::size_t{cutBytes} * lines, 0);
  for (std::size_t line = 0; line < lines; ++line) {
    const std::uint8_t* const source = rows.data() + line * lineBytes;
    std::uint8_t* const target = cut_.data() + line * cutBytes;
    if (window_.bitsPerPixel == 1) {
      CutBits(source, target);
    } else {
      CutBytes(source, target);
    }
  }
  next_.Write(cut_, cutBytes, lines);
}

// Where a pixel of the picture stands in the line.
std::uint32_t WindowSink::Place(std::uint32_t pixel) const {
  return window_.skipped + (window_.isFlipped ? window_.width - 1 - pixel : pixel);
}

void WindowSink::CutBits(const std::uint8_t* line, std::uint8_t* target) const {
  for (std::uint32_t pixel = 0; pixel < window_.width; ++pixel) {
    const std::uint32_t place = Place(pixel);
    const unsigned bit = line[place / 8] >> (7 - place % 8) & 1u;
    target[pixel / 8] |= static_cast<std::uint8_t>(bit << (7 - pixel % 8));
  }
}

void WindowSink::CutBytes(const std::uint8_t* line, std::uint8_t* target) const {
  const std::size_t pixelBytes = window_.bitsPerPixel / 8;
  if (!window_.isFlipped) {
    std::copy_n(line + window_.skipped * pixelBytes, window_.width * pixelBytes, target);
    return;
  }
  for (std::uint32_t pixel = 0; pixel < window_.width; ++pixel) {
    std::copy_n(line + Place(pixel) * pixelBytes, pixelBytes, target + pixel * pixelBytes);
  }
}

}  // namespace pmscan
