#include "capture/file/settings_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstring>
#include <limits>

#include "capture/file/number_text.h"

namespace capture {
namespace {

using pmddb832::kScannerSettingsFields;
using pmddb832::ScannerSettings;
using pmddb832::SettingsField;
using Bytes = std::vector<std::uint8_t>;

struct NamedForm {
  std::string_view name;
  ValueForm form;
};

// The members whose form does not follow from their width.
constexpr std::array kNamedForms{
    NamedForm{"commandLevelText", ValueForm::kText},
    NamedForm{"modelName", ValueForm::kText},
    NamedForm{"productNameReply", ValueForm::kText},
    NamedForm{"modelId", ValueForm::kText},
    NamedForm{"originX", ValueForm::kReal},
    NamedForm{"originY", ValueForm::kReal},
    NamedForm{"brightness", ValueForm::kSigned},
    NamedForm{"halftoneIndex", ValueForm::kSigned},
    NamedForm{"sharpness", ValueForm::kSigned},
    NamedForm{"progressWindow", ValueForm::kPointer},
    NamedForm{"deviceInterface", ValueForm::kPointer},
};

constexpr bool EveryNameIsAMember() {
  return std::all_of(kNamedForms.begin(), kNamedForms.end(), [](const NamedForm& row) {
    return std::any_of(kScannerSettingsFields.begin(), kScannerSettingsFields.end(),
                       [&](const SettingsField& field) { return field.name == row.name; });
  });
}
static_assert(EveryNameIsAMember());

unsigned BitsOf(const SettingsField& field) {
  return static_cast<unsigned>(field.width * 8);
}

std::uint64_t LittleEndian(const Bytes& bytes) {
  std::uint64_t value = 0;
  for (std::size_t i = bytes.size(); i-- > 0;) value = value << 8 | bytes[i];
  return value;
}

Bytes ToLittleEndian(std::uint64_t value, std::size_t width) {
  Bytes bytes(width);
  for (std::uint8_t& byte : bytes) {
    byte = static_cast<std::uint8_t>(value);
    value >>= 8;
  }
  return bytes;
}

// All signed members have 32 bits.
std::string SignedText(const Bytes& bytes) {
  return std::to_string(static_cast<std::int32_t>(LittleEndian(bytes)));
}

std::string RealText(const Bytes& bytes) {
  std::array<char, 32> text{};
  const auto value = std::bit_cast<double>(LittleEndian(bytes));
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
  return {text.data(), end};
}

std::string QuotedText(const Bytes& bytes) {
  const std::string text(bytes.begin(), std::find(bytes.begin(), bytes.end(), 0));
  const bool isPrintable = std::all_of(text.begin(), text.end(),
                                       [](char c) { return c >= ' ' && c <= '~' && c != '"'; });
  return isPrintable ? '"' + text + '"' : std::string();
}

std::string Write(ValueForm form, const Bytes& bytes) {
  switch (form) {
    case ValueForm::kUnsigned:
      return std::to_string(LittleEndian(bytes));
    case ValueForm::kSigned:
      return SignedText(bytes);
    case ValueForm::kReal:
      return RealText(bytes);
    case ValueForm::kText:
      return QuotedText(bytes);
    default:
      return {};
  }
}

template <class Number>
std::optional<Number> ParseWhole(const std::string& text) {
  Number value{};
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end) return std::nullopt;
  return value;
}

std::optional<Bytes> ParseQuoted(const SettingsField& field, const std::string& text) {
  const bool isQuoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
  if (!isQuoted || text.size() - 2 > field.width) return std::nullopt;
  Bytes bytes(text.begin() + 1, text.end() - 1);
  bytes.resize(field.width);
  return bytes;
}

template <class Number>
std::optional<Bytes> ToBytes(const std::optional<Number>& number, const SettingsField& field) {
  if (!number.has_value()) return std::nullopt;
  return ToLittleEndian(static_cast<std::uint64_t>(*number), field.width);
}

const std::uint8_t* BytesOf(const ScannerSettings& settings) {
  return reinterpret_cast<const std::uint8_t*>(&settings);
}

}  // namespace

const SettingsField* FindField(std::string_view name) {
  const auto found = std::find_if(kScannerSettingsFields.begin(), kScannerSettingsFields.end(),
                                  [&](const SettingsField& field) { return field.name == name; });
  return found == kScannerSettingsFields.end() ? nullptr : &*found;
}

ValueForm FormOf(const SettingsField& field) {
  for (const NamedForm& row : kNamedForms) {
    if (row.name == field.name) return row.form;
  }
  const bool isNumber = field.width == 1 || field.width == 2 || field.width == 4;
  return isNumber && !field.name.starts_with("reserved") ? ValueForm::kUnsigned : ValueForm::kBytes;
}

const SettingsField& FieldAt(std::uint32_t offset) {
  const SettingsField* found = kScannerSettingsFields.data();
  for (const SettingsField& field : kScannerSettingsFields) {
    if (field.offset <= offset) found = &field;
  }
  return *found;
}

std::string ValueText(const SettingsChange& change) {
  const SettingsField& field = FieldAt(change.offset);
  const std::string text = Write(FormOf(field), change.bytes);
  return ParseValue(field, text) == change.bytes ? text : std::string();
}

std::optional<Bytes> ParseValue(const SettingsField& field, const std::string& text) {
  switch (FormOf(field)) {
    case ValueForm::kUnsigned:
      return ToBytes(ParseNumber(text, BitsOf(field)), field);
    case ValueForm::kSigned:
      return ToBytes(ParseWhole<std::int32_t>(text), field);
    case ValueForm::kReal: {
      const std::optional<double> value = ParseWhole<double>(text);
      if (!value.has_value()) return std::nullopt;
      return ToLittleEndian(std::bit_cast<std::uint64_t>(*value), field.width);
    }
    case ValueForm::kText:
      return ParseQuoted(field, text);
    default:
      return std::nullopt;
  }
}

std::string ExpectedValue(const SettingsField& field) {
  switch (FormOf(field)) {
    case ValueForm::kUnsigned:
      return "a number from 0 to " + std::to_string((std::uint64_t{1} << BitsOf(field)) - 1);
    case ValueForm::kSigned:
      return "a number from -2147483648 to 2147483647";
    case ValueForm::kReal:
      return "a number such as 100 or 0.5";
    case ValueForm::kText:
      return "a text in quotes of at most " + std::to_string(field.width) + " characters";
    default:
      return "a colon and " + std::to_string(field.width) + " bytes";
  }
}

std::vector<SettingsChange> Compare(const ScannerSettings& before, const ScannerSettings& after,
                                    bool byModule) {
  std::vector<SettingsChange> changes;
  for (const SettingsField& field : kScannerSettingsFields) {
    if (FormOf(field) == ValueForm::kPointer) continue;
    const std::uint8_t* const now = BytesOf(after) + field.offset;
    if (std::memcmp(BytesOf(before) + field.offset, now, field.width) == 0) continue;
    changes.push_back(
        {byModule, static_cast<std::uint32_t>(field.offset), Bytes(now, now + field.width)});
  }
  return changes;
}

void Apply(const SettingsChange& change, ScannerSettings& settings) {
  std::copy(change.bytes.begin(), change.bytes.end(),
            reinterpret_cast<std::uint8_t*>(&settings) + change.offset);
}

}  // namespace capture
