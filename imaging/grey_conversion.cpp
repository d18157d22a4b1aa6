#include <algorithm>

#include "imaging/pixel_conversion.h"
#include "imaging/row_frame.h"
#include "imaging/row_kernels.h"
#include "platform/trace.h"

namespace pmddb832::Scanutil {
namespace {

void CopyGrey(const ScanLines& lines, const HostRows& rows, RowFill fill, bool trim,
              std::size_t pixelBytes) {
  if (fill.pixels > 0 && trim) {
    ScanLines trimmed = lines;
    const std::size_t skipped =
        std::min(static_cast<std::size_t>(fill.pixels), lines.first.plane0.size());
    trimmed.first.plane0 = lines.first.plane0.subspan(skipped);
    CopyRows(trimmed, rows, {0, fill.isWhite}, pixelBytes);
    return;
  }
  CopyRows(lines, rows, {fill.pixels < 0 ? -fill.pixels : fill.pixels, fill.isWhite}, pixelBytes);
}

}  // namespace

void Pix256MonoFinal(const ScanLines& lines, const HostRows& rows, std::int16_t pad, bool trim,
                     bool whiteFill) {
  const TraceScope trace{"Scanutil::Pix256MonoFinal"};
  CopyGrey(lines, rows, {pad, whiteFill}, trim, 1);
}

void Pix256MonoPreview(const ScanLines& lines, const HostRows& rows, std::int16_t pad,
                       bool whiteFill) {
  const TraceScope trace{"Scanutil::Pix256MonoPreview"};
  ConvertRows(lines, rows, {pad, whiteFill}, {1, 1}, FastestRowKernels().previewGrey);
}

void Pix4096Mono(const ScanLines& lines, const HostRows& rows, std::int16_t pad, bool trim,
                 bool whiteFill) {
  const TraceScope trace{"Scanutil::Pix4096Mono"};
  CopyGrey(lines, rows, {pad, whiteFill}, trim, 2);
}

}  // namespace pmddb832::Scanutil
