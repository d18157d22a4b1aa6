#pragma once

#include <cstddef>
#include <cstdint>

#include "imaging/processor.h"

// The inner loops of the pixel conversions. Each converts `pixels` pixels, in order. It reads and
// writes the bytes of these pixels and no others; source and destination may have any alignment and
// must not overlap. With 0 pixels the pointers are not used.
namespace pmddb832 {

// Three planes of 4-bit samples, two pixels a byte with the first in the high nibble, in the order
// of their weights.
struct ColourPlanes {
  const std::uint8_t* first;
  const std::uint8_t* middle;
  const std::uint8_t* last;
};

using RowKernel = void (*)(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);
using PlanesKernel = void (*)(const ColourPlanes& from, std::uint8_t* to, std::size_t pixels);

struct RowKernels {
  RowKernel invert;             // 1 byte, complemented
  RowKernel previewGrey;        // 1 byte: k becomes k - k / 11, and 255 becomes 234
  RowKernel swapBytes;          // 3 bytes, in reverse order
  RowKernel swapSamples;        // three 2-byte samples, in reverse order
  RowKernel reduce;             // three 2-byte little-endian samples to their high bytes
  RowKernel reduceSwapped;      // the same, in reverse order
  RowKernel unpack12;           // two pixels in three bytes to 2 bytes a pixel
  PlanesKernel paletteIndices;  // top three bits of each sample to an index into the colour cube
};

// Plain loops, which run everywhere and define what every other routine must do.
namespace scalar_rows {

void Invert(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);
void PreviewGrey(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);
void SwapBytes(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);
void SwapSamples(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);
void Reduce(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);
void ReduceSwapped(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);
void Unpack12(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);
void PaletteIndices(const ColourPlanes& from, std::uint8_t* to, std::size_t pixels);

}  // namespace scalar_rows

// The rows as these loops, and in vectors of 16, 32 and 64 bytes: each of the latter runs only
// where the processor has its instructions.
extern const RowKernels kScalarRowKernels;
extern const RowKernels kSsse3RowKernels;
extern const RowKernels kAvx2RowKernels;
extern const RowKernels kAvx512RowKernels;

// The fastest for a processor that can do as much.
const RowKernels& RowKernelsFor(RowVectors vectors);

// The fastest for this one, chosen at the first call.
const RowKernels& FastestRowKernels();

}  // namespace pmddb832
