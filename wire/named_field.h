#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "wire/wire_block.h"

// What a person calls the fields of the wire blocks: tables for those who show a conversation. The
// module itself reads none of it.
namespace pmddb832 {

// One value of a field, or one of its bits.
struct ValueName {
  std::uint32_t value;
  std::string_view name;
  bool isTrouble = false;  // the scanner reports a fault, or that it cannot go on now
};

enum class FieldShape : std::uint8_t {
  kNumber,
  kSigned,    // two's complement
  kChoice,    // one of the names
  kFlags,     // the names of the bits that are set
  kCode,      // shown in hexadecimal
  kText,      // characters, padded with blanks or zeros
  kPosition,  // of the focus, offset by kFocusOffset
};

// A field of a block under its name. Numbers are little-endian.
struct NamedField {
  std::string_view name;
  std::size_t offset;
  std::size_t width;  // bytes
  FieldShape shape;
  std::string_view unit;             // behind the value; may be empty
  std::span<const ValueName> names;  // of a kChoice, of kFlags
};

template <std::unsigned_integral T, std::size_t offset>
constexpr NamedField Named(std::string_view name, Field<T, offset>, std::string_view unit = {}) {
  return {name, offset, sizeof(T), FieldShape::kNumber, unit, {}};
}

template <std::unsigned_integral T, std::size_t offset>
constexpr NamedField Named(std::string_view name, Field<T, offset>, FieldShape shape) {
  return {name, offset, sizeof(T), shape, {}, {}};
}

template <std::unsigned_integral T, std::size_t offset>
constexpr NamedField NamedChoice(std::string_view name, Field<T, offset>,
                                 std::span<const ValueName> names) {
  return {name, offset, sizeof(T), FieldShape::kChoice, {}, names};
}

template <std::unsigned_integral T, std::size_t offset>
constexpr NamedField NamedFlags(std::string_view name, Field<T, offset>,
                                std::span<const ValueName> names) {
  return {name, offset, sizeof(T), FieldShape::kFlags, {}, names};
}

constexpr NamedField NamedText(std::string_view name, std::size_t offset, std::size_t width) {
  return {name, offset, width, FieldShape::kText, {}, {}};
}

}  // namespace pmddb832
