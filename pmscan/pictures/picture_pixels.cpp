#include "pmscan/pictures/picture_pixels.h"

#include <cstddef>

namespace pmscan {
namespace {

std::uint8_t Widen(unsigned nibble) {
  return static_cast<std::uint8_t>(nibble * 17);
}

}  // namespace

void ExpandColour12(std::span<const std::uint8_t> packed, std::span<std::uint8_t> expanded) {
  for (std::size_t pixel = 0; pixel < expanded.size() / 3; ++pixel) {
    const std::uint8_t first = packed[2 * pixel];
    const std::uint8_t second = packed[2 * pixel + 1];
    expanded[3 * pixel] = Widen(first & 0x0Fu);
    expanded[3 * pixel + 1] = Widen(second >> 4u);
    expanded[3 * pixel + 2] = Widen(second & 0x0Fu);
  }
}

void SwapSampleBytes(std::span<const std::uint8_t> samples, std::span<std::uint8_t> swapped) {
  for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
    swapped[i] = samples[i + 1];
    swapped[i + 1] = samples[i];
  }
}

void FillRange(std::span<std::uint8_t> samples, std::uint8_t bits) {
  for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
    const unsigned sample = samples[i] | unsigned{samples[i + 1]} << 8u;
    samples[i] = static_cast<std::uint8_t>(sample | sample >> bits);
  }
}

std::span<const std::uint8_t> PicturePixels(std::span<const std::uint8_t> rows,
                                            const ScanMode& mode, std::uint8_t sampleBits,
                                            std::vector<std::uint8_t>& buffer) {
  if (mode.isPacked) {
    buffer.resize(rows.size() / 2 * 3);
    ExpandColour12(rows, buffer);
    return buffer;
  }
  if (!IsDeep(mode.layout)) return rows;
  buffer.assign(rows.begin(), rows.end());
  FillRange(buffer, sampleBits);
  return buffer;
}

}  // namespace pmscan
