#include <array>

#include "imaging/row_kernels.h"

namespace pmddb832 {
namespace {

// Level of a 3-bit sample in the 6 x 6 x 6 colour cube.
constexpr std::array<std::uint8_t, 8> kCubeLevel{0, 1, 1, 2, 3, 4, 4, 5};

consteval std::array<std::uint8_t, 512> MakeCubeTable() {
  std::array<std::uint8_t, 512> table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    table[i] = static_cast<std::uint8_t>(36 * kCubeLevel[i >> 6] + 6 * kCubeLevel[i >> 3 & 7] +
                                         kCubeLevel[i & 7]);
  }
  return table;
}

// Index: top three bits of the first, the middle and the last plane's sample.
constexpr std::array<std::uint8_t, 512> kCubeTable = MakeCubeTable();

// `shift` selects the sample: 5 the one in the high nibble, 1 the one in the low nibble.
std::uint8_t CubeIndex(const ColourPlanes& from, std::size_t byte, int shift) {
  const auto index = (from.first[byte] >> shift & 7) << 6 | (from.middle[byte] >> shift & 7) << 3 |
                     (from.last[byte] >> shift & 7);
  return kCubeTable[static_cast<std::size_t>(index)];
}

void UnpackFirst(const std::uint8_t* from, std::uint8_t* to) {
  to[0] = static_cast<std::uint8_t>(from[2] >> 4);
  to[1] = static_cast<std::uint8_t>((from[1] & 0xF0) | from[0] >> 4);
}

void UnpackSecond(const std::uint8_t* from, std::uint8_t* to) {
  to[0] = static_cast<std::uint8_t>(from[2] & 0x0F);
  to[1] = static_cast<std::uint8_t>(from[1] << 4 | (from[0] & 0x0F));
}

}  // namespace

namespace scalar_rows {

void Invert(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  for (std::size_t i = 0; i < pixels; ++i) to[i] = static_cast<std::uint8_t>(~from[i]);
}

// k * 5958 >> 16 is k / 11 for every byte. White is deliberately out of step: the rule would give
// 232.
void PreviewGrey(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  for (std::size_t i = 0; i < pixels; ++i) {
    const std::uint16_t k = from[i];
    const auto eleventh = static_cast<std::uint16_t>(k * 5958u >> 16);
    to[i] = static_cast<std::uint8_t>(k - eleventh + (k == 255 ? 2 : 0));
  }
}

void SwapBytes(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  for (std::size_t i = 0; i < pixels; ++i) {
    to[3 * i] = from[3 * i + 2];
    to[3 * i + 1] = from[3 * i + 1];
    to[3 * i + 2] = from[3 * i];
  }
}

void SwapSamples(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  for (std::size_t i = 0; i < pixels; ++i) {
    to[6 * i] = from[6 * i + 4];
    to[6 * i + 1] = from[6 * i + 5];
    to[6 * i + 2] = from[6 * i + 2];
    to[6 * i + 3] = from[6 * i + 3];
    to[6 * i + 4] = from[6 * i];
    to[6 * i + 5] = from[6 * i + 1];
  }
}

void Reduce(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  for (std::size_t i = 0; i < 3 * pixels; ++i) to[i] = from[2 * i + 1];
}

void ReduceSwapped(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  for (std::size_t i = 0; i < pixels; ++i) {
    to[3 * i] = from[6 * i + 5];
    to[3 * i + 1] = from[6 * i + 3];
    to[3 * i + 2] = from[6 * i + 1];
  }
}

void Unpack12(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  const std::size_t pairs = pixels / 2;
  for (std::size_t i = 0; i < pairs; ++i) {
    UnpackFirst(from + 3 * i, to + 4 * i);
    UnpackSecond(from + 3 * i, to + 4 * i + 2);
  }
  if (pixels % 2 != 0) UnpackFirst(from + 3 * pairs, to + 4 * pairs);
}

void PaletteIndices(const ColourPlanes& from, std::uint8_t* to, std::size_t pixels) {
  const std::size_t pairs = pixels / 2;
  for (std::size_t i = 0; i < pairs; ++i) {
    to[2 * i] = CubeIndex(from, i, 5);
    to[2 * i + 1] = CubeIndex(from, i, 1);
  }
  if (pixels % 2 != 0) to[2 * pairs] = CubeIndex(from, pairs, 5);
}

}  // namespace scalar_rows

const RowKernels kScalarRowKernels{
    scalar_rows::Invert,      scalar_rows::PreviewGrey,    scalar_rows::SwapBytes,
    scalar_rows::SwapSamples, scalar_rows::Reduce,         scalar_rows::ReduceSwapped,
    scalar_rows::Unpack12,    scalar_rows::PaletteIndices,
};

}  // namespace pmddb832
