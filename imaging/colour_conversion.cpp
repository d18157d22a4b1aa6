#include <algorithm>
#include <utility>

#include "imaging/pixel_conversion.h"
#include "imaging/row_frame.h"
#include "imaging/row_kernels.h"
#include "platform/trace.h"

namespace pmddb832::Scanutil {

void Pix256Color(const ScanLine& line, HostRow row, bool firstPlaneLeads, std::int16_t pad,
                 bool whiteFill) {
  const TraceScope trace{"Scanutil::Pix256Color"};
  ColourPlanes planes{line.plane0.data(), line.plane1.data(), line.plane2.data()};
  if (!firstPlaneLeads) std::swap(planes.first, planes.last);
  const std::size_t bytesPerPlane =
      std::min({line.plane0.size(), line.plane1.size(), line.plane2.size()});
  ConvertRow(line, row, {pad, whiteFill}, 2 * bytesPerPlane, 1,
             [&planes](const std::uint8_t*, std::uint8_t* to, std::size_t pixels) {
               FastestRowKernels().paletteIndices(planes, to, pixels);
             });
}

void PixTrueColor(const ScanLine& line, HostRow row, bool swapChannels, std::int16_t pad,
                  bool whiteFill) {
  const TraceScope trace{"Scanutil::PixTrueColor"};
  if (swapChannels) {
    ConvertRow(line, row, {pad, whiteFill}, line.plane0.size() / 3, 3,
               FastestRowKernels().swapBytes);
  } else {
    CopyRow(line, row, {pad, whiteFill}, 3);
  }
}

void Pix4096Color(const ScanLine& line, HostRow row, std::int16_t pad, bool whiteFill) {
  const TraceScope trace{"Scanutil::Pix4096Color"};
  ConvertRow(line, row, {pad, whiteFill}, 2 * (line.plane0.size() / 3), 2,
             FastestRowKernels().unpack12);
}

void PixSuperColor(const ScanLine& line, HostRow row, bool swapChannels, std::int16_t pad,
                   bool reduce, bool whiteFill) {
  const TraceScope trace{"Scanutil::PixSuperColor"};
  const std::size_t linePixels = line.plane0.size() / 6;
  const RowKernels& kernels = FastestRowKernels();
  if (reduce) {
    ConvertRow(line, row, {pad, whiteFill}, linePixels, 3,
               swapChannels ? kernels.reduceSwapped : kernels.reduce);
  } else if (swapChannels) {
    ConvertRow(line, row, {pad, whiteFill}, linePixels, 6, kernels.swapSamples);
  } else {
    CopyRow(line, row, {pad, whiteFill}, 6);
  }
}

}  // namespace pmddb832::Scanutil
