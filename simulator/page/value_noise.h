#pragma once

#include <cstdint>

namespace simulator {

// Smooth random values from 0 to 1 over the plane, the same on every machine.

inline double LatticeValue(std::int32_t x, std::int32_t y, std::uint32_t seed) {
  std::uint32_t hash = static_cast<std::uint32_t>(x) * 0x9E3779B1U ^
                       static_cast<std::uint32_t>(y) * 0x85EBCA77U ^ seed * 0xC2B2AE3DU;
  hash = (hash ^ hash >> 15) * 0x2C1B3C6DU;
  hash = (hash ^ hash >> 12) * 0x297A2D39U;
  return (hash ^ hash >> 15) / 4294967295.0;
}

// The whole number below; quicker than std::floor, which is a call where the processor has no
// instruction for it.
inline std::int32_t WholeBelow(double value) {
  const auto whole = static_cast<std::int32_t>(value);
  return whole - (value < whole ? 1 : 0);
}

// Bumps of size 1. The coordinates lie within a thousand million of 0.
inline double Noise(double x, double y, std::uint32_t seed) {
  const std::int32_t i = WholeBelow(x);
  const std::int32_t j = WholeBelow(y);
  const auto smooth = [](double t) { return t * t * (3 - 2 * t); };
  const double u = smooth(x - i);
  const double v = smooth(y - j);
  const double above = LatticeValue(i, j, seed) * (1 - u) + LatticeValue(i + 1, j, seed) * u;
  const double below =
      LatticeValue(i, j + 1, seed) * (1 - u) + LatticeValue(i + 1, j + 1, seed) * u;
  return above * (1 - v) + below * v;
}

// Bumps of size 1 with ever finer ones of half the size and half the height on them.
inline double Roughness(double x, double y, int octaves, std::uint32_t seed) {
  double sum = 0;
  double height = 0.5;
  for (int octave = 0; octave < octaves; ++octave) {
    sum += height * Noise(x, y, seed + static_cast<std::uint32_t>(octave));
    height /= 2;
    x = 2 * x + 17.3;
    y = 2 * y + 9.1;
  }
  return sum / (1 - 2 * height);
}

}  // namespace simulator
