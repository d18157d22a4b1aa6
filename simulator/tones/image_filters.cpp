#include "simulator/tones/image_filters.h"

#include <algorithm>

namespace simulator {
namespace {

std::uint16_t CutOff(std::int32_t sample) {
  return static_cast<std::uint16_t>(std::clamp(sample, 0, 0xFFFF));
}

}  // namespace

std::uint16_t Sharpened(std::int8_t steps, std::uint16_t sample, std::uint32_t sumOfNeighbours) {
  const std::int32_t difference = 4 * sample - static_cast<std::int32_t>(sumOfNeighbours);
  return CutOff(sample + steps * difference / (steps > 0 ? 8 : 16));
}

void ApplyMatrix(const ColorMatrix& matrix, std::span<std::uint16_t> rgb) {
  constexpr std::int32_t kOne = 32;
  for (std::size_t pixel = 0; pixel + 3 <= rgb.size(); pixel += 3) {
    const std::array before{rgb[pixel], rgb[pixel + 1], rgb[pixel + 2]};
    for (std::size_t row = 0; row < 3; ++row) {
      std::int32_t sum = 0;
      for (std::size_t column = 0; column < 3; ++column) {
        sum += static_cast<std::int8_t>(matrix[3 * row + column]) * before[column];
      }
      rgb[pixel + row] = CutOff(sum / kOne);
    }
  }
}

void Brighten(std::int8_t steps, std::span<std::uint16_t> samples) {
  if (steps == 0) return;
  constexpr std::int32_t kStep = 0x2000;
  for (std::uint16_t& sample : samples) sample = CutOff(sample + steps * kStep);
}

}  // namespace simulator
