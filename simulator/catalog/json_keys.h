#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/catalog/json_document.h"

namespace simulator {

// A key that an object may have, and what reads its value.
template <class Target>
struct KeyRow {
  std::string_view key;
  void (*read)(const JsonNode& value, Target& target);
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

// Plain values; each throws ProfileError that says what was expected.
bool FlagOf(const JsonNode& node);
std::uint32_t WholeOf(const JsonNode& node, std::uint32_t least, std::uint32_t most);
double PositiveOf(const JsonNode& node);    // with or without a fraction
std::uint8_t ByteOf(const JsonNode& node);  // 0 to 255, or a text of two digits: "0x38"
const std::string& TextOf(const JsonNode& node);
// Bytes in hexadecimal digits, with blanks between them as one likes.
std::vector<std::uint8_t> BytesOf(const JsonNode& node);

template <class Target>
std::vector<std::string_view> KeysOf(std::span<const KeyRow<Target>> rows) {
  std::vector<std::string_view> keys;
  for (const KeyRow<Target>& row : rows) keys.push_back(row.key);
  return keys;
}

// Reads the keys of an object in the order of the rows, not in that of the file: later rows may
// build upon earlier ones.
template <class Target>
void ReadObject(const JsonNode& node, std::span<const KeyRow<Target>> rows, Target& target) {
  RequireKnownKeys(node, KeysOf(rows));
  for (const KeyRow<Target>& row : rows) {
    if (const JsonNode* const value = FindKey(node, row.key)) row.read(*value, target);
  }
}

// Readers of a member, for the rows.
template <class Target, auto kMember, std::uint32_t kLeast = 0,
          std::uint32_t kMost = std::numeric_limits<std::uint32_t>::max()>
void ReadWhole(const JsonNode& value, Target& target) {
  target.*kMember = WholeOf(value, kLeast, kMost);
}

template <class Target, auto kMember>
void ReadFlag(const JsonNode& value, Target& target) {
  target.*kMember = FlagOf(value);
}

template <class Target, auto kMember>
void ReadByte(const JsonNode& value, Target& target) {
  target.*kMember = ByteOf(value);
}

template <class Target, auto kMember>
void ReadText(const JsonNode& value, Target& target) {
  target.*kMember = TextOf(value);
}

// Reads a text that nothing here needs.
template <class Target>
void IgnoreText(const JsonNode& value, Target&) {
  TextOf(value);
}

}  // namespace simulator
