#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/catalog/json_document.h"

namespace simulator {

// What a value in a profile may be: the reader checks it, and messages, schema and document say it.
struct ValueKind {
  enum class Shape {
    kText,   // of at most `most` characters; 0: of any length
    kWhole,  // a number from `least` to `most`, or `word`
    kName,   // one of `names`
    kList,   // `least` to `most` of `items`; 0 to 0: as many as one likes
    kOther,  // what `fits`; with none, its own reader judges it
  };
  Shape shape = Shape::kOther;
  std::string_view words = {};   // as in "true or false"; of a name and of elements what they are
  std::string_view schema = {};  // kOther: the JSON Schema
  bool (*fits)(const JsonNode& value) = nullptr;
  std::uint32_t least = 0;
  std::uint32_t most = 0;
  std::vector<std::string_view> (*names)() = nullptr;
  const ValueKind* items = nullptr;
  std::string_view word = {};
};

constexpr ValueKind Text(std::uint32_t mostCharacters = 0) {
  return {ValueKind::Shape::kText, "a text in quotes", {}, nullptr, 0, mostCharacters};
}
constexpr ValueKind Whole(std::uint32_t least, std::uint32_t most, std::string_view word = {}) {
  return {
      ValueKind::Shape::kWhole, "a whole number", {}, nullptr, least, most, nullptr, nullptr, word};
}
constexpr ValueKind Name(std::string_view what, std::vector<std::string_view> (*names)()) {
  return {ValueKind::Shape::kName, what, {}, nullptr, 0, 0, names};
}
// An object that a table of keys has the schema's `reference` for.
constexpr ValueKind Object(std::string_view reference) {
  return {ValueKind::Shape::kOther, "an object, see below", reference};
}

bool IsFlag(const JsonNode& value);
bool IsByte(const JsonNode& value);
bool IsLength(const JsonNode& value);
bool IsHexDigits(const JsonNode& value);
bool IsNumberOrLetter(const JsonNode& value);

inline constexpr ValueKind kFlag{ValueKind::Shape::kOther, "true or false",
                                 R"({"type": "boolean"})", &IsFlag};
inline constexpr ValueKind kByte{ValueKind::Shape::kOther,
                                 "a number from 0 to 255, or two digits as in \"0x38\"",
                                 R"({"$ref": "#/$defs/byte"})", &IsByte};
// With or without a fraction.
inline constexpr ValueKind kLength{ValueKind::Shape::kOther, "a number that is not negative",
                                   R"({"type": "number", "minimum": 0})", &IsLength};
// With blanks between them as one likes.
inline constexpr ValueKind kHexDigits{
    ValueKind::Shape::kOther, "bytes of two hexadecimal digits each, as in \"15\" or \"02 80\"",
    R"({"type": "string", "pattern": "^ *([0-9A-Fa-f] *[0-9A-Fa-f] *)*$"})", &IsHexDigits};
// A letter stands for its code.
inline constexpr ValueKind kNumberOrLetter{
    ValueKind::Shape::kOther, "a whole number, or the letter of a command in quotes",
    R"({"$ref": "#/$defs/numberOrLetter"})", &IsNumberOrLetter};

bool IsWord(const JsonNode& value, std::string_view word);

// Throws ProfileError that says what was expected.
void Require(const ValueKind& kind, const JsonNode& value);

// "a whole number from 1 to 1000", "`pixels`, `inches` or `mm`".
std::string WordsOf(const ValueKind& kind);
// As JSON.
std::string SchemaOf(const ValueKind& kind);

// A key of an object, what stands behind it, and a sentence on it.
struct KeyText {
  std::string_view key;
  ValueKind kind;
  std::string_view sentence;
  bool isNeeded = false;
};

// The keys of an object by the schema's name for it, and what it is: "a fault".
struct KeyGroup {
  std::string_view object;
  std::string_view noun;
  std::vector<KeyText> keys;
};

// Throws ProfileError, with the nearest of the known keys and all of them, unless each key of the
// object is known, each that is needed is there, and the values are of their kinds.
void RequireKeys(const JsonNode& object, const KeyGroup& group);

}  // namespace simulator
