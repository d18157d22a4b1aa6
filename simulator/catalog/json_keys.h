#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/catalog/json_document.h"
#include "simulator/catalog/value_kind.h"

namespace simulator {

// A key that an object may have, and what reads its value once it is known to be of its kind.
template <class Target>
struct KeyRow {
  KeyText text;
  void (*read)(const JsonNode& value, Target& target);
};

// The keys of an object; KeyGroup has the words for it.
template <class Target>
struct KeyTable {
  std::string_view object;
  std::string_view noun;
  std::span<const KeyRow<Target>> rows;

  KeyGroup Group() const {
    KeyGroup group{object, noun, {}};
    for (const KeyRow<Target>& row : rows) group.keys.push_back(row.text);
    return group;
  }
};

// The members of an object, and the elements of a list. Throw ProfileError when it is none.
const JsonNode::Object& MembersOf(const JsonNode& node);
const JsonNode::List& ElementsOf(const JsonNode& node);

// Null when the object has no such key.
const JsonNode* FindKey(const JsonNode& object, std::string_view key);

// Throws ProfileError, with the nearest of the known keys and all of them, unless each key of the
// object is known.
void RequireKnownKeys(const JsonNode& object, const std::vector<std::string_view>& known);

// Throws the same of a text that must be one of some names. `what` as in "a part".
[[noreturn]] void FailUnknownName(const JsonNode& text, std::string_view what,
                                  const std::vector<std::string_view>& known);

// Plain values that are known to be of their kinds.
inline bool FlagOf(const JsonNode& node) {
  return std::get<bool>(node.value);
}
inline std::uint32_t WholeOf(const JsonNode& node) {
  return static_cast<std::uint32_t>(std::get<std::int64_t>(node.value));
}
double LengthOf(const JsonNode& node);
std::uint8_t ByteOf(const JsonNode& node);
std::uint32_t NumberOrLetterOf(const JsonNode& node);

// A text; throws ProfileError when it is none.
const std::string& TextOf(const JsonNode& node);

bool IsWhole(const JsonNode& node, std::int64_t least, std::int64_t most);

// A byte of one or two hexadecimal digits; bytes of two each, and blanks. Nothing for other texts.
std::optional<std::uint8_t> ParseHex(std::string_view digits);
std::optional<std::vector<std::uint8_t>> BytesIn(std::string digits);

// Reads the keys of an object in the order of the rows, not in that of the file: later rows may
// build upon earlier ones.
template <class Target>
void ReadObject(const JsonNode& node, const KeyTable<Target>& table, Target& target) {
  RequireKeys(node, table.Group());
  for (const KeyRow<Target>& row : table.rows) {
    if (const JsonNode* const value = FindKey(node, row.text.key)) row.read(*value, target);
  }
}

// Reads a member, for the rows.
template <class Target, auto kMember, auto kRead>
void ReadMember(const JsonNode& value, Target& target) {
  target.*kMember = kRead(value);
}

// Of a text that nothing here needs.
template <class Target>
void Ignore(const JsonNode&, Target&) {}

// The row of a table by its name, which is there.
template <class Rows>
const auto& RowNamed(const Rows& rows, std::string_view name) {
  return *std::find_if(rows.begin(), rows.end(), [&](const auto& row) { return row.name == name; });
}
template <const auto& kRows>
std::vector<std::string_view> NamesOf() {
  std::vector<std::string_view> names;
  for (const auto& row : kRows) names.push_back(row.name);
  return names;
}

}  // namespace simulator
