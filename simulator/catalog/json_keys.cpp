#include "simulator/catalog/json_keys.h"

#include <algorithm>
#include <charconv>

#include "simulator/catalog/nearest_name.h"

namespace simulator {
const JsonNode::Object& MembersOf(const JsonNode& node) {
  const auto* const members = std::get_if<JsonNode::Object>(&node.value);
  if (members == nullptr) node.FailExpecting("an object in braces");
  return *members;
}

const JsonNode::List& ElementsOf(const JsonNode& node) {
  const auto* const elements = std::get_if<JsonNode::List>(&node.value);
  if (elements == nullptr) node.FailExpecting("a list in brackets");
  return *elements;
}

const JsonNode* FindKey(const JsonNode& object, std::string_view key) {
  for (const JsonMember& member : MembersOf(object)) {
    if (member.key == key) return &member.value;
  }
  return nullptr;
}

void RequireKnownKeys(const JsonNode& object, const std::vector<std::string_view>& known) {
  for (const JsonMember& member : MembersOf(object)) {
    if (std::find(known.begin(), known.end(), member.key) != known.end()) continue;
    member.value.Fail("there is no such key" + SuggestName(member.key, known));
  }
}

void FailUnknownName(const JsonNode& text, std::string_view what,
                     const std::vector<std::string_view>& known) {
  text.Fail("expected " + std::string(what) + ", got " + text.Describe() +
            SuggestName(TextOf(text), known));
}

double LengthOf(const JsonNode& node) {
  const auto* const whole = std::get_if<std::int64_t>(&node.value);
  return whole != nullptr ? static_cast<double>(*whole) : std::get<double>(node.value);
}

std::uint8_t ByteOf(const JsonNode& node) {
  const auto* const text = std::get_if<std::string>(&node.value);
  return text != nullptr ? *ParseHex(text->substr(2)) : static_cast<std::uint8_t>(WholeOf(node));
}

std::uint32_t NumberOrLetterOf(const JsonNode& node) {
  const auto* const text = std::get_if<std::string>(&node.value);
  return text != nullptr ? static_cast<unsigned char>(text->front()) : WholeOf(node);
}

const std::string& TextOf(const JsonNode& node) {
  const auto* const text = std::get_if<std::string>(&node.value);
  if (text == nullptr) node.FailExpecting("a text in quotes");
  return *text;
}

bool IsWhole(const JsonNode& node, std::int64_t least, std::int64_t most) {
  const auto* const number = std::get_if<std::int64_t>(&node.value);
  return number != nullptr && *number >= least && *number <= most;
}

std::optional<std::uint8_t> ParseHex(std::string_view digits) {
  std::uint8_t byte = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, byte, 16);
  const bool isGood = error == std::errc{} && stop == end && digits.size() <= 2;
  return isGood ? std::optional(byte) : std::nullopt;
}

std::optional<std::vector<std::uint8_t>> BytesIn(std::string digits) {
  std::erase(digits, ' ');
  std::vector<std::uint8_t> bytes;
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    const std::string_view pair = std::string_view(digits).substr(i, 2);
    const std::optional<std::uint8_t> byte = ParseHex(pair);
    if (pair.size() < 2 || !byte) return std::nullopt;
    bytes.push_back(*byte);
  }
  return bytes;
}

}  // namespace simulator
