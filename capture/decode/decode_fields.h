#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "wire/named_field.h"

namespace capture {

// A field of a block as a person reads it.
struct FieldRow {
  std::string name;
  std::string value;       // with its unit: "300 dpi"
  bool isTrouble = false;  // the value tells of a fault

  std::string OneLine() const { return name.empty() ? value : name + " " + value; }
  bool operator==(const FieldRow&) const = default;
};

// The fields that lie within the block, in the order of the table.
std::vector<FieldRow> DescribeFields(std::span<const pmddb832::NamedField> fields,
                                     std::span<const std::uint8_t> block);

// The bytes that belong to no field and are not 0: "byte 44 0x12, byte 45 0x01". Empty when there
// are none.
std::string DescribeOtherBytes(std::span<const pmddb832::NamedField> fields,
                               std::span<const std::uint8_t> block);

// "left 8 pixels, top 24 lines".
std::string Joined(const std::vector<FieldRow>& rows);

// At most the first sixteen bytes: "1B 49".
std::string HexText(std::span<const std::uint8_t> bytes);

// "0x13".
std::string HexNumber(std::uint32_t value);

}  // namespace capture
