#include "capture/decode/decode_fields.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "wire/focus.h"

namespace capture {
namespace {

using pmddb832::FieldShape;
using pmddb832::NamedField;
using pmddb832::ValueName;
using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t kMostBytesShown = 16;
constexpr std::uint32_t kLastPlainNumber = 9;  // beyond it a code is easier to find in hexadecimal

std::uint32_t LittleEndian(Bytes bytes) {
  std::uint32_t value = 0;
  for (std::size_t i = bytes.size(); i-- > 0;) value = value << 8 | bytes[i];
  return value;
}

std::string HexDigits(std::uint32_t value) {
  std::array<char, 8> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value, 16).ptr;
  std::string text(digits.data(), end);
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char c) { return c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c; });
  return text.size() % 2 == 0 ? text : "0" + text;
}

std::string CodeText(std::uint32_t value) {
  return value <= kLastPlainNumber ? std::to_string(value) : HexNumber(value);
}

const ValueName* FindName(std::uint32_t value, std::span<const ValueName> names) {
  const auto row = std::find_if(names.begin(), names.end(),
                                [value](const ValueName& name) { return name.value == value; });
  return row == names.end() ? nullptr : &*row;
}

// The value under its name: "on (1)"; a number that has none stays a number.
std::string ChoiceText(std::uint32_t value, std::span<const ValueName> names) {
  const ValueName* const row = FindName(value, names);
  if (row == nullptr) return CodeText(value);
  return std::string(row->name) + " (" + CodeText(value) + ")";
}

std::string FlagsText(std::uint32_t value, std::span<const ValueName> names) {
  std::string text;
  for (const ValueName& bit : names) {
    if ((value & bit.value) == 0) continue;
    text.append(text.empty() ? "" : ", ").append(bit.name);
    value &= ~bit.value;
  }
  if (value == 0) return text.empty() ? "clear" : text;
  return text + (text.empty() ? "bits " : ", bits ") + HexNumber(value);
}

// Every bit is shown in the end, so that nothing is lost.
std::string FlagsWithCode(std::uint32_t value, std::span<const ValueName> names) {
  const std::string text = FlagsText(value, names);
  return value == 0 ? text : text + " (" + HexNumber(value) + ")";
}

std::string QuotedText(Bytes bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    const bool isPrintable = byte >= ' ' && byte <= '~';
    text += isPrintable ? static_cast<char>(byte) : (byte == 0 ? ' ' : '.');
  }
  const std::size_t last = text.find_last_not_of(' ');
  return '"' + text.substr(0, last == std::string::npos ? 0 : last + 1) + '"';
}

std::string SignedText(std::uint32_t value, std::size_t width) {
  const unsigned unusedBits = 32 - 8 * static_cast<unsigned>(width);
  return std::to_string(static_cast<std::int32_t>(value << unusedBits) >> unusedBits);
}

std::string PositionText(std::uint32_t value, const NamedField& field) {
  if (FindName(value, field.names) != nullptr) return ChoiceText(value, field.names);
  const auto wire = static_cast<std::int32_t>(value);
  return std::to_string(wire - pmddb832::kFocusOffset) + " (" + HexNumber(value) + ")";
}

std::string ValueText(const NamedField& field, Bytes bytes) {
  if (field.shape == FieldShape::kText) return QuotedText(bytes);
  const std::uint32_t value = LittleEndian(bytes);
  switch (field.shape) {
    case FieldShape::kSigned:
      return SignedText(value, field.width);
    case FieldShape::kChoice:
      return ChoiceText(value, field.names);
    case FieldShape::kFlags:
      return FlagsWithCode(value, field.names);
    case FieldShape::kCode:
      return CodeText(value);
    case FieldShape::kPosition:
      return PositionText(value, field);
    default:
      return std::to_string(value) + (field.unit.empty() ? "" : " ") + std::string(field.unit);
  }
}

bool IsTrouble(const NamedField& field, Bytes bytes) {
  if (field.shape != FieldShape::kChoice && field.shape != FieldShape::kFlags) return false;
  const std::uint32_t value = LittleEndian(bytes);
  return std::any_of(field.names.begin(), field.names.end(), [&](const ValueName& name) {
    const bool holds =
        field.shape == FieldShape::kFlags ? (value & name.value) != 0 : value == name.value;
    return name.isTrouble && holds;
  });
}

bool Covers(const NamedField& field, std::size_t offset) {
  return offset >= field.offset && offset < field.offset + field.width;
}

}  // namespace

std::vector<FieldRow> DescribeFields(std::span<const NamedField> fields, Bytes block) {
  std::vector<FieldRow> rows;
  for (const NamedField& field : fields) {
    if (field.offset + field.width > block.size()) continue;
    const Bytes bytes = block.subspan(field.offset, field.width);
    rows.push_back({std::string(field.name), ValueText(field, bytes), IsTrouble(field, bytes)});
  }
  return rows;
}

std::string DescribeOtherBytes(std::span<const NamedField> fields, Bytes block) {
  std::string text;
  for (std::size_t i = 0; i < block.size(); ++i) {
    const bool isNamed = std::any_of(fields.begin(), fields.end(),
                                     [i](const NamedField& field) { return Covers(field, i); });
    if (isNamed || block[i] == 0) continue;
    text.append(text.empty() ? "byte " : ", byte ").append(std::to_string(i));
    text.append(" ").append(HexNumber(block[i]));
  }
  return text;
}

std::string Joined(const std::vector<FieldRow>& rows) {
  std::string text;
  for (const FieldRow& row : rows) text.append(text.empty() ? "" : ", ").append(row.OneLine());
  return text;
}

std::string HexText(Bytes bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes.first(std::min(bytes.size(), kMostBytesShown))) {
    text.append(text.empty() ? "" : " ").append(HexDigits(byte));
  }
  return bytes.size() > kMostBytesShown ? text + " ..." : text;
}

std::string HexNumber(std::uint32_t value) {
  return "0x" + HexDigits(value);
}

}  // namespace capture
