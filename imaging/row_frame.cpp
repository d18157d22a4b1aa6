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

void ConvertRows(const ScanLines& lines, const HostRows& rows, RowFill fill,
                 const PixelBytes& bytes, RowKernel convert) {
  const ScanLine& line = lines.first;
  const std::int64_t wanted = std::int64_t{line.pixelCount} - fill.pixels;
  const std::size_t rowPixels = rows.first.size() / bytes.rowBytes;
  ForEachRow(
      lines, rows, line.plane0.size(),
      [&](std::size_t left) {
        return DivideRow(wanted, fill.pixels, left / bytes.lineBytes * bytes.pixels, rowPixels);
      },
      [&](const RowFrame& frame, std::size_t offset, HostRow row) {
        const std::uint8_t* const from = line.plane0.data() + offset;
        ConvertUnits(convert, from, row.data(), frame.converted, frame.converted * bytes.rowBytes);
        if (!frame.IsConvertedOnly()) FinishRow(row, frame, bytes.rowBytes, fill.isWhite);
      });
}

void CopyRows(const ScanLines& lines, const HostRows& rows, RowFill fill, std::size_t pixelBytes) {
  ConvertRows(lines, rows, fill, {pixelBytes, pixelBytes}, nullptr);
}

}  // namespace pmddb832
