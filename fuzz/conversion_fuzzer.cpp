// Each conversion with any counts, pads and flags; line and row in allocations of exactly their
// sizes. Behind it the line in every row of every set of vectors that this processor has, which
// must be as the plain loop makes it.

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <vector>

#include "fuzz/input.h"
#include "imaging/pixel_conversion.h"
#include "imaging/row_kernels.h"

namespace pmddb832 {
namespace {

// What a conversion is told beside its line, its row and its pad.
struct Flags {
  bool first;
  bool second;
  bool white;
};

void Convert(std::uint8_t routine, const ScanLine& from, HostRow to, std::int16_t pad,
             const Flags& flags) {
  switch (routine) {
    case 0:
      return Scanutil::Pix2Mono(from, to, pad, flags.first, flags.white);
    case 1:
      return Scanutil::Pix256MonoFinal(from, to, pad, flags.first, flags.white);
    case 2:
      return Scanutil::Pix256MonoPreview(from, to, pad, flags.white);
    case 3:
      return Scanutil::Pix256Color(from, to, flags.first, pad, flags.white);
    case 4:
      return Scanutil::PixTrueColor(from, to, flags.first, pad, flags.white);
    case 5:
      return Scanutil::Pix4096Color(from, to, pad, flags.white);
    case 6:
      return Scanutil::PixSuperColor(from, to, flags.first, pad, flags.second, flags.white);
    default:
      return Scanutil::Pix4096Mono(from, to, pad, flags.first, flags.white);
  }
}

// So many pixels, and their bytes in the line and in the row.
struct RowShape {
  RowKernel RowKernels::*kernel;
  std::size_t pixels;
  std::size_t read;
  std::size_t written;
};
constexpr std::array kRowShapes{
    RowShape{&RowKernels::invert, 1, 1, 1},    RowShape{&RowKernels::previewGrey, 1, 1, 1},
    RowShape{&RowKernels::swapBytes, 1, 3, 3}, RowShape{&RowKernels::swapSamples, 1, 6, 6},
    RowShape{&RowKernels::reduce, 1, 6, 3},    RowShape{&RowKernels::reduceSwapped, 1, 6, 3},
    RowShape{&RowKernels::unpack12, 2, 3, 4},
};

using Bytes = std::vector<std::uint8_t>;

Bytes RowOf(const RowKernels& kernels, const RowShape& shape, std::span<const std::uint8_t> line) {
  const std::size_t groups = line.size() / shape.read;
  Bytes row(groups * shape.written);
  (kernels.*shape.kernel)(line.data(), row.data(), groups * shape.pixels);
  return row;
}

Bytes IndicesOf(const RowKernels& kernels, std::span<const std::uint8_t> line) {
  const std::size_t plane = line.size() / 3;
  const std::uint8_t* const first = line.data();
  Bytes row(2 * plane);
  kernels.paletteIndices({first, first + plane, first + 2 * plane}, row.data(), row.size());
  return row;
}

void CompareRows(RowVectors vectors, std::span<const std::uint8_t> line) {
  if (vectors > WidestRowVectors(AskProcessor())) return;
  const RowKernels& kernels = RowKernelsFor(vectors);
  for (const RowShape& shape : kRowShapes) {
    if (RowOf(kernels, shape, line) != RowOf(kScalarRowKernels, shape, line)) std::abort();
  }
  if (IndicesOf(kernels, line) != IndicesOf(kScalarRowKernels, line)) std::abort();
}

}  // namespace
}  // namespace pmddb832

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pmddb832;
  fuzz::Input input({data, size});
  const std::uint8_t routine = input.Byte() % 8;
  const std::uint8_t flags = input.Byte();
  const auto pad = static_cast<std::int16_t>(input.Word());
  const auto pixels = static_cast<std::int16_t>(input.Word());
  const std::size_t rowBytes = input.Word() % 4096;
  const auto row = std::make_unique<std::uint8_t[]>(rowBytes);
  const std::size_t lineBytes = input.Rest().size();
  const auto line = std::make_unique<std::uint8_t[]>(lineBytes);
  std::copy(input.Rest().begin(), input.Rest().end(), line.get());
  const std::span<const std::uint8_t> bytes{line.get(), lineBytes};
  const ScanLine from{pixels, bytes, bytes.subspan(lineBytes / 3), bytes.subspan(lineBytes / 2)};
  Convert(routine, from, {row.get(), rowBytes}, pad,
          {(flags & 1) != 0, (flags & 2) != 0, (flags & 4) != 0});
  for (const RowVectors vectors : {RowVectors::kSsse3, RowVectors::kAvx2, RowVectors::kAvx512}) {
    CompareRows(vectors, bytes);
  }
  return 0;
}
