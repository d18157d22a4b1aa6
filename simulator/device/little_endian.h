#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace simulator {

// 16-bit and 32-bit fields at an offset of a block; the offset lies inside the block.

inline std::uint32_t Get16(std::span<const std::uint8_t> block, std::size_t offset) {
  return block[offset] | std::uint32_t{block[offset + 1]} << 8;
}

inline std::uint32_t Get32(std::span<const std::uint8_t> block, std::size_t offset) {
  return Get16(block, offset) | Get16(block, offset + 2) << 16;
}

inline void Put32(std::span<std::uint8_t> block, std::size_t offset, std::uint32_t value) {
  for (std::size_t i = 0; i < 4; ++i) {
    block[offset + i] = static_cast<std::uint8_t>(value >> (8 * i));
  }
}

// The low 16 bits of `value`.
inline void Append16(std::vector<std::uint8_t>& block, std::uint32_t value) {
  block.push_back(static_cast<std::uint8_t>(value));
  block.push_back(static_cast<std::uint8_t>(value >> 8));
}

}  // namespace simulator
