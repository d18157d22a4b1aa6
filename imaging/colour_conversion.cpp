#include <algorithm>
#include <utility>

#include "imaging/pixel_conversion.h"
#include "imaging/row_frame.h"
#include "imaging/row_kernels.h"
#include "platform/trace.h"

namespace pmddb832::Scanutil {

void Pix256Color(const ScanLines& lines, const HostRows& rows, bool firstPlaneLeads,
                 std::int16_t pad, bool whiteFill) {
  const TraceScope trace{"Scanutil::Pix256Color"};
  const ScanLine& line = lines.first;
  ColourPlanes planes{line.plane0.data(), line.plane1.data(), line.plane2.data()};
  if (!firstPlaneLeads) std::swap(planes.first, planes.last);
  const std::size_t bytesPerPlane =
      std::min({line.plane0.size(), line.plane1.size(), line.plane2.size()});
  const std::size_t rowPixels = rows.first.size();
  const PlanesKernel convert = FastestRowKernels().paletteIndices;
  ForEachRow(
      lines, rows, bytesPerPlane,
      [&](std::size_t left) {
        return DivideRow(std::int64_t{line.pixelCount} - pad, pad, 2 * left, rowPixels);
      },
      [&](const RowFrame& frame, std::size_t offset, HostRow row) {
        convert({planes.first + offset, planes.middle + offset, planes.last + offset}, row.data(),
                frame.converted);
        if (!frame.IsConvertedOnly()) FinishRow(row, frame, 1, whiteFill);
      });
}

void PixTrueColor(const ScanLines& lines, const HostRows& rows, bool swapChannels, std::int16_t pad,
                  bool whiteFill) {
  const TraceScope trace{"Scanutil::PixTrueColor"};
  if (swapChannels) {
    ConvertRows(lines, rows, {pad, whiteFill}, {3, 3}, FastestRowKernels().swapBytes);
  } else {
    CopyRows(lines, rows, {pad, whiteFill}, 3);
  }
}

void Pix4096Color(const ScanLines& lines, const HostRows& rows, std::int16_t pad, bool whiteFill) {
  const TraceScope trace{"Scanutil::Pix4096Color"};
  ConvertRows(lines, rows, {pad, whiteFill}, {2, 3, 2}, FastestRowKernels().unpack12);
}

void PixSuperColor(const ScanLines& lines, const HostRows& rows, bool swapChannels,
                   std::int16_t pad, bool reduce, bool whiteFill) {
  const TraceScope trace{"Scanutil::PixSuperColor"};
  const RowKernels& kernels = FastestRowKernels();
  if (reduce) {
    ConvertRows(lines, rows, {pad, whiteFill}, {3, 6},
                swapChannels ? kernels.reduceSwapped : kernels.reduce);
  } else if (swapChannels) {
    ConvertRows(lines, rows, {pad, whiteFill}, {6, 6}, kernels.swapSamples);
  } else {
    CopyRows(lines, rows, {pad, whiteFill}, 6);
  }
}

}  // namespace pmddb832::Scanutil
