#include "simulator/catalog/json_keys.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "simulator/catalog/nearest_name.h"

namespace simulator {
namespace {

// Nothing unless the whole text is a number of that base, of at most two digits.
bool ParseByte(std::string_view digits, std::uint8_t& byte) {
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, byte, 16);
  return error == std::errc{} && stop == end && digits.size() <= 2;
}

std::string WholeText(std::uint32_t least, std::uint32_t most) {
  return "a whole number from " + std::to_string(least) + " to " + std::to_string(most);
}

}  // namespace

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

bool FlagOf(const JsonNode& node) {
  const auto* const flag = std::get_if<bool>(&node.value);
  if (flag == nullptr) node.FailExpecting("true or false");
  return *flag;
}

std::uint32_t WholeOf(const JsonNode& node, std::uint32_t least, std::uint32_t most) {
  const auto* const number = std::get_if<std::int64_t>(&node.value);
  if (number == nullptr || *number < least || *number > most) {
    node.FailExpecting(WholeText(least, most));
  }
  return static_cast<std::uint32_t>(*number);
}

double PositiveOf(const JsonNode& node) {
  const auto* const whole = std::get_if<std::int64_t>(&node.value);
  const auto* const number = std::get_if<double>(&node.value);
  const double value = whole != nullptr    ? static_cast<double>(*whole)
                       : number != nullptr ? *number
                                           : -1.0;
  if (value < 0 || !std::isfinite(value)) node.FailExpecting("a number that is not negative");
  return value;
}

std::uint8_t ByteOf(const JsonNode& node) {
  constexpr std::string_view kExpected = "a number from 0 to 255, or two digits as in \"0x38\"";
  if (const auto* const text = std::get_if<std::string>(&node.value)) {
    std::uint8_t byte = 0;
    const bool good = text->starts_with("0x") && ParseByte(text->substr(2), byte);
    if (!good) node.FailExpecting(kExpected);
    return byte;
  }
  const auto* const number = std::get_if<std::int64_t>(&node.value);
  if (number == nullptr || *number < 0 || *number > 255) node.FailExpecting(kExpected);
  return static_cast<std::uint8_t>(*number);
}

const std::string& TextOf(const JsonNode& node) {
  const auto* const text = std::get_if<std::string>(&node.value);
  if (text == nullptr) node.FailExpecting("a text in quotes");
  return *text;
}

std::vector<std::uint8_t> BytesOf(const JsonNode& node) {
  std::string digits = TextOf(node);
  std::erase(digits, ' ');
  std::vector<std::uint8_t> bytes;
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    const std::string_view pair = std::string_view(digits).substr(i, 2);
    if (pair.size() < 2 || !ParseByte(pair, bytes.emplace_back())) {
      node.FailExpecting("bytes of two hexadecimal digits each, as in \"15\" or \"02 80\"");
    }
  }
  return bytes;
}

}  // namespace simulator
