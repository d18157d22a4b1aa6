#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>

namespace pmddb832 {

// A little-endian unsigned integer at a fixed place of a wire block.
template <std::unsigned_integral T, std::size_t fieldOffset>
struct Field {
  static constexpr std::size_t kOffset = fieldOffset;
  static constexpr std::size_t kEnd = fieldOffset + sizeof(T);
};

template <std::unsigned_integral T>
constexpr T GetLittleEndian(std::span<const std::uint8_t, sizeof(T)> bytes) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < sizeof(T); ++i) value |= std::uint64_t{bytes[i]} << (8 * i);
  return static_cast<T>(value);
}

template <std::unsigned_integral T>
constexpr void PutLittleEndian(std::span<std::uint8_t, sizeof(T)> bytes, T value) {
  for (std::size_t i = 0; i < sizeof(T); ++i) {
    bytes[i] = static_cast<std::uint8_t>(std::uint64_t{value} >> (8 * i));
  }
}

template <std::size_t size, class T, std::size_t offset>
constexpr T Get(const std::array<std::uint8_t, size>& block, Field<T, offset> field) {
  static_assert(field.kEnd <= size);
  return GetLittleEndian<T>(std::span{block}.template subspan<offset, sizeof(T)>());
}

template <std::size_t size, class T, std::size_t offset>
constexpr void Put(std::array<std::uint8_t, size>& block, Field<T, offset> field,
                   std::type_identity_t<T> value) {
  static_assert(field.kEnd <= size);
  PutLittleEndian<T>(std::span{block}.template subspan<offset, sizeof(T)>(), value);
}

// The header of an information reply, and what it declares: STX, status, 16-bit count of data
// bytes.
using ReplyHeader = std::array<std::uint8_t, 4>;
inline constexpr Field<std::uint8_t, 0> kReplyStx;
inline constexpr Field<std::uint8_t, 1> kReplyStatus;
inline constexpr Field<std::uint16_t, 2> kReplyCount;

// The longest reply that is taken.
using ReplyBuffer = std::array<std::uint8_t, 150>;

}  // namespace pmddb832
