#include "simulator/catalog/value_kind.h"

#include <algorithm>
#include <cmath>

#include "simulator/catalog/json_keys.h"

namespace simulator {
namespace {

using Shape = ValueKind::Shape;

bool Fits(const ValueKind& kind, const JsonNode& value) {
  const auto* const text = std::get_if<std::string>(&value.value);
  switch (kind.shape) {
    case Shape::kText:
      return text != nullptr && (kind.most == 0 || text->size() <= kind.most);
    case Shape::kWhole:
      return IsWord(value, kind.word) || IsWhole(value, kind.least, kind.most);
    default:
      return kind.fits == nullptr || kind.fits(value);
  }
}

void RequireName(const ValueKind& kind, const JsonNode& value) {
  const std::vector<std::string_view> names = kind.names();
  if (std::find(names.begin(), names.end(), TextOf(value)) != names.end()) return;
  FailUnknownName(value, kind.words, names);
}

std::string RangeOf(const ValueKind& kind) {
  return std::to_string(kind.least) + " to " + std::to_string(kind.most);
}

void RequireList(const ValueKind& kind, const JsonNode& value) {
  const JsonNode::List& elements = ElementsOf(value);
  for (const JsonNode& element : elements) Require(*kind.items, element);
  if (kind.most == 0 || (elements.size() >= kind.least && elements.size() <= kind.most)) return;
  value.Fail("expected " + RangeOf(kind) + " " + std::string(kind.words) + ", got " +
             std::to_string(elements.size()));
}

// "a, b or c", each between `quote`.
std::string Listed(const std::vector<std::string_view>& names, const std::string& quote,
                   const std::string& lastComma) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += i + 1 == names.size() ? lastComma : ", ";
    text.append(quote).append(names[i]).append(quote);
  }
  return text;
}

std::string RangeIn(const ValueKind& kind, const std::string& least, const std::string& most) {
  if (kind.most == 0) return {};
  return ", \"" + least + "\": " + std::to_string(kind.least) + ", \"" + most +
         "\": " + std::to_string(kind.most);
}

std::string SchemaOfWhole(const ValueKind& kind) {
  std::string whole = R"({"type": "integer")" + RangeIn(kind, "minimum", "maximum") + "}";
  if (kind.word.empty()) return whole;
  return R"({"anyOf": [)" + whole + R"(, {"const": ")" + std::string(kind.word) + "\"}]}";
}

}  // namespace

bool IsWord(const JsonNode& value, std::string_view word) {
  const auto* const text = std::get_if<std::string>(&value.value);
  return text != nullptr && *text == word;
}

bool IsFlag(const JsonNode& value) {
  return std::holds_alternative<bool>(value.value);
}

bool IsByte(const JsonNode& value) {
  if (const auto* const text = std::get_if<std::string>(&value.value)) {
    return text->starts_with("0x") && ParseHex(text->substr(2)).has_value();
  }
  return IsWhole(value, 0, 255);
}

bool IsLength(const JsonNode& value) {
  if (const auto* const number = std::get_if<double>(&value.value)) {
    return *number >= 0 && std::isfinite(*number);
  }
  return IsWhole(value, 0, std::numeric_limits<std::int64_t>::max());
}

bool IsHexDigits(const JsonNode& value) {
  const auto* const text = std::get_if<std::string>(&value.value);
  return text != nullptr && BytesIn(*text).has_value();
}

bool IsNumberOrLetter(const JsonNode& value) {
  const auto* const text = std::get_if<std::string>(&value.value);
  return text != nullptr ? text->size() == 1 : IsWhole(value, 0, 0xFFFFFFFF);
}

void Require(const ValueKind& kind, const JsonNode& value) {
  if (kind.shape == Shape::kName) return RequireName(kind, value);
  if (kind.shape == Shape::kList) return RequireList(kind, value);
  if (!Fits(kind, value)) value.FailExpecting(WordsOf(kind));
}

std::string WordsOf(const ValueKind& kind) {
  switch (kind.shape) {
    case Shape::kText:
      return kind.most == 0 ? std::string(kind.words)
                            : "at most " + std::to_string(kind.most) + " characters";
    case Shape::kWhole:
      return std::string(kind.words) + " from " + RangeOf(kind) +
             (kind.word.empty() ? "" : ", or \"" + std::string(kind.word) + "\"");
    case Shape::kName:
      return Listed(kind.names(), "`", " or ");
    case Shape::kList:
      return "a list" + (kind.most == 0 ? " of " : " of " + RangeOf(kind) + " ") +
             std::string(kind.words);
    case Shape::kOther:
      return std::string(kind.words);
  }
  return {};
}

std::string SchemaOf(const ValueKind& kind) {
  switch (kind.shape) {
    case Shape::kText:
      return kind.most == 0
                 ? R"({"type": "string"})"
                 : R"({"type": "string", "maxLength": )" + std::to_string(kind.most) + "}";
    case Shape::kWhole:
      return SchemaOfWhole(kind);
    case Shape::kName:
      return R"({"enum": [)" + Listed(kind.names(), "\"", ", ") + "]}";
    case Shape::kList:
      return R"({"type": "array", "items": )" + SchemaOf(*kind.items) +
             RangeIn(kind, "minItems", "maxItems") + "}";
    case Shape::kOther:
      return std::string(kind.schema);
  }
  return {};
}

void RequireKeys(const JsonNode& object, const KeyGroup& group) {
  std::vector<std::string_view> known;
  for (const KeyText& row : group.keys) known.push_back(row.key);
  RequireKnownKeys(object, known);
  for (const KeyText& row : group.keys) {
    const JsonNode* const value = FindKey(object, row.key);
    if (value != nullptr) {
      Require(row.kind, *value);
    } else if (row.isNeeded) {
      object.Fail(std::string(group.noun) + " needs the key \"" + std::string(row.key) +
                  "\": " + WordsOf(row.kind));
    }
  }
}

}  // namespace simulator
