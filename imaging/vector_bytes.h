#pragma once

#include <cstddef>
#include <cstdint>

// Vectors of kVectorBytes bytes, in the compilers' own words: operators work on each element, and a
// number stands for a vector of it. Part of row_bodies.h.

namespace pmddb832 {
namespace {

using Bytes = std::uint8_t __attribute__((vector_size(kVectorBytes), may_alias));
using Words = std::uint16_t __attribute__((vector_size(kVectorBytes), may_alias));

inline Words AsWords(Bytes bytes) {
  return reinterpret_cast<Words>(bytes);
}

inline Bytes AsBytes(Words words) {
  return reinterpret_cast<Bytes>(words);
}

// A vector at any address.
struct __attribute__((packed, may_alias)) AnywhereBytes {
  Bytes bytes;
};

inline Bytes Load(const std::uint8_t* from) {
  return reinterpret_cast<const AnywhereBytes*>(from)->bytes;
}

// NOLINTNEXTLINE(readability-non-const-parameter) The vector is written there.
inline void Store(std::uint8_t* to, Bytes bytes) {
  reinterpret_cast<AnywhereBytes*>(to)->bytes = bytes;
}

// A vector that lies in memory.
struct BytePattern {
  std::uint8_t bytes[kVectorBytes];
};

inline Bytes Load(const BytePattern& pattern) {
  return Load(pattern.bytes);
}

struct SixteenBytes {
  std::uint8_t bytes[16];
};

constexpr BytePattern Repeated(const SixteenBytes& sixteen) {
  BytePattern pattern{};
  for (int i = 0; i < kVectorBytes; ++i) pattern.bytes[i] = sixteen.bytes[i % 16];
  return pattern;
}

constexpr BytePattern Counted(int first, int step) {
  BytePattern pattern{};
  for (int i = 0; i < kVectorBytes; ++i) {
    pattern.bytes[i] = static_cast<std::uint8_t>(first + i * step);
  }
  return pattern;
}

}  // namespace
}  // namespace pmddb832
