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

void Pix2Mono(const ScanLines& lines, const HostRows& rows, std::int16_t pad, bool invert,
              bool whiteFill) {
  const TraceScope trace{"Scanutil::Pix2Mono"};
  const ScanLine& line = lines.first;
  const std::int32_t fill = BytesForPixels(pad);
  const std::size_t rowBytes = rows.first.size();
  const RowKernel convert = invert ? FastestRowKernels().invert : nullptr;
  ForEachRow(
      lines, rows, line.plane0.size(),
      [&](std::size_t left) { return DivideRow(line.pixelCount, fill, left, rowBytes); },
      [&](const RowFrame& frame, std::size_t offset, HostRow row) {
        const std::uint8_t* const from = line.plane0.data() + offset;
        ConvertUnits(convert, from, row.data(), frame.converted, frame.converted);
        if (frame.IsConvertedOnly()) return;
        const std::uint8_t* const last =
            frame.converted == 0 ? nullptr : from + frame.converted - 1;
        FinishRow(row, frame, 1, last, whiteFill);
      });
}

}  // namespace pmddb832::Scanutil
