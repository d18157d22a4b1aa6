#include <cstring>

#include "imaging/pixel_conversion.h"
#include "imaging/row_frame.h"
#include "imaging/row_kernels.h"
#include "platform/trace.h"

namespace pmddb832::Scanutil {
namespace {

constexpr std::int32_t BytesForPixels(std::int16_t pixels) {
  return pixels < 1 ? 0 : ((pixels - 1) >> 3) + 1;
}

}  // namespace

void Pix2Mono(const ScanLine& line, HostRow row, std::int16_t pad, bool invert, bool whiteFill) {
  const TraceScope trace{"Scanutil::Pix2Mono"};
  const std::uint8_t* from = line.plane0.data();
  const RowFrame frame =
      DivideRow(line.pixelCount, BytesForPixels(pad), line.plane0.size(), row.size());
  if (frame.converted == 0) {
    FinishRow(row, frame, 1, nullptr, whiteFill);
    return;
  }
  if (invert) {
    FastestRowKernels().invert(from, row.data(), frame.converted);
  } else {
    std::memcpy(row.data(), from, frame.converted);
  }
  if (frame.IsConvertedOnly()) return;
  FinishRow(row, frame, 1, from + frame.converted - 1, whiteFill);
}

}  // namespace pmddb832::Scanutil
