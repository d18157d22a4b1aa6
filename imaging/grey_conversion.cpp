#include <algorithm>

#include "imaging/pixel_conversion.h"
#include "imaging/row_frame.h"
#include "imaging/row_kernels.h"
#include "platform/trace.h"

namespace pmddb832::Scanutil {
namespace {

void CopyGrey(const ScanLine& line, HostRow row, std::int16_t pad, bool trim,
              std::size_t pixelBytes) {
  if (pad > 0 && trim) {
    ScanLine trimmed = line;
    const auto skipped = static_cast<std::size_t>(pad);
    trimmed.plane0 = line.plane0.subspan(std::min(skipped, line.plane0.size()));
    CopyRow(trimmed, row, 0, pixelBytes);
    return;
  }
  CopyRow(line, row, pad < 0 ? -pad : pad, pixelBytes);
}

}  // namespace

void Pix256MonoFinal(const ScanLine& line, HostRow row, std::int16_t pad, bool trim) {
  const TraceScope trace{"Scanutil::Pix256MonoFinal"};
  CopyGrey(line, row, pad, trim, 1);
}

void Pix256MonoPreview(const ScanLine& line, HostRow row, std::int16_t pad) {
  const TraceScope trace{"Scanutil::Pix256MonoPreview"};
  ConvertRow(line, row, pad, line.plane0.size(), 1, FastestRowKernels().previewGrey);
}

void Pix4096Mono(const ScanLine& line, HostRow row, std::int16_t pad, bool trim) {
  const TraceScope trace{"Scanutil::Pix4096Mono"};
  CopyGrey(line, row, pad, trim, 2);
}

}  // namespace pmddb832::Scanutil
