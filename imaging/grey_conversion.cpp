#include <algorithm>

#include "imaging/pixel_conversion.h"
#include "imaging/row_frame.h"
#include "imaging/row_kernels.h"
#include "platform/trace.h"

namespace pmddb832::Scanutil {
namespace {

void CopyGrey(const ScanLine& line, HostRow row, RowFill fill, bool trim, std::size_t pixelBytes) {
  if (fill.pixels > 0 && trim) {
    ScanLine trimmed = line;
    const auto skipped = static_cast<std::size_t>(fill.pixels);
    trimmed.plane0 = line.plane0.subspan(std::min(skipped, line.plane0.size()));
    CopyRow(trimmed, row, {0, fill.isWhite}, pixelBytes);
    return;
  }
  CopyRow(line, row, {fill.pixels < 0 ? -fill.pixels : fill.pixels, fill.isWhite}, pixelBytes);
}

}  // namespace

void Pix256MonoFinal(const ScanLine& line, HostRow row, std::int16_t pad, bool trim,
                     bool whiteFill) {
  const TraceScope trace{"Scanutil::Pix256MonoFinal"};
  CopyGrey(line, row, {pad, whiteFill}, trim, 1);
}

void Pix256MonoPreview(const ScanLine& line, HostRow row, std::int16_t pad, bool whiteFill) {
  const TraceScope trace{"Scanutil::Pix256MonoPreview"};
  ConvertRow(line, row, {pad, whiteFill}, line.plane0.size(), 1, FastestRowKernels().previewGrey);
}

void Pix4096Mono(const ScanLine& line, HostRow row, std::int16_t pad, bool trim, bool whiteFill) {
  const TraceScope trace{"Scanutil::Pix4096Mono"};
  CopyGrey(line, row, {pad, whiteFill}, trim, 2);
}

}  // namespace pmddb832::Scanutil
