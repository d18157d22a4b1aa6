#include "imaging/row_frame.h"

#include <cstring>

namespace pmddb832 {
namespace {

constexpr std::uint8_t kWhite = 0xFF;

void FillPixels(std::uint8_t* to, std::size_t pixels, std::size_t pixelBytes,
                const std::uint8_t* lastPixel, bool white) {
  if (white) {
    std::memset(to, kWhite, pixels * pixelBytes);
  } else if (lastPixel == nullptr) {
    std::memset(to, 0, pixels * pixelBytes);
  } else {
    for (std::size_t i = 0; i < pixels; ++i) {
      std::memcpy(to + i * pixelBytes, lastPixel, pixelBytes);
    }
  }
}

}  // namespace

void FinishRow(HostRow row, const RowFrame& frame, std::size_t pixelBytes,
               const std::uint8_t* lastPixel, bool whiteFill) {
  const std::size_t fillStart = frame.converted * pixelBytes;
  if (frame.filled > 0) {
    FillPixels(row.data() + fillStart, frame.filled, pixelBytes, lastPixel, whiteFill);
  }
  if (!frame.cutShort) return;
  const HostRow rest = row.subspan(fillStart + frame.filled * pixelBytes);
  std::fill(rest.begin(), rest.end(), kWhite);
}

void FinishRow(HostRow row, const RowFrame& frame, std::size_t pixelBytes, bool whiteFill) {
  const std::uint8_t* lastPixel =
      frame.converted == 0 ? nullptr : row.data() + (frame.converted - 1) * pixelBytes;
  FinishRow(row, frame, pixelBytes, lastPixel, whiteFill);
}

void CopyRows(const ScanLines& lines, const HostRows& rows, RowFill fill, std::size_t pixelBytes) {
  const auto copy = [pixelBytes](const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
    if (pixels > 0) std::memcpy(to, from, pixels * pixelBytes);
  };
  ConvertRows(lines, rows, fill, {pixelBytes, pixelBytes}, copy);
}

}  // namespace pmddb832
