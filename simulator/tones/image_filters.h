#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace simulator {

// What a scanner does to its samples of 16 bits besides gamma. The wire tells numbers only; what
// they do here is this scanner's own. Results are cut off at black and at full light.

// Nine numbers with sign, in which 32 stands for 1: red, green and blue as they come out, each as
// so much of the red, green and blue that went in.
using ColorMatrix = std::array<std::uint8_t, 9>;

// A sample between its four neighbours. For each step above 0 it moves away from their mean by half
// of the difference; for each step below 0 towards it by a quarter.
std::uint16_t Sharpened(std::int8_t steps, std::uint16_t sample, std::uint32_t sumOfNeighbours);

// `rgb` has three samples a pixel.
void ApplyMatrix(const ColorMatrix& matrix, std::span<std::uint16_t> rgb);

// Adds an eighth of full light for each step.
void Brighten(std::int8_t steps, std::span<std::uint16_t> samples);

}  // namespace simulator
