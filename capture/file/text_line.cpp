#include "capture/file/text_line.h"

#include "capture/file/number_text.h"

namespace capture {
namespace {

constexpr std::string_view kBlanks = " \t\r";
constexpr std::size_t kFractionDigits = 6;  // of a time in seconds

// "12.345678" seconds as microseconds; the fraction may be shorter, or missing.
std::optional<std::uint64_t> ParseSeconds(std::string_view text) {
  const std::size_t point = text.find('.');
  std::string digits(text.substr(0, point));
  const std::string_view fraction =
      point == std::string_view::npos ? std::string_view() : text.substr(point + 1);
  if (fraction.size() > kFractionDigits) return std::nullopt;
  digits.append(fraction).append(kFractionDigits - fraction.size(), '0');
  return ParseDigits(digits, 10);
}

int DigitOf(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  return -1;
}

bool AppendBytes(std::string_view word, std::vector<std::uint8_t>& bytes) {
  if (word.size() % 2 != 0) return false;
  for (std::size_t i = 0; i < word.size(); i += 2) {
    const int high = DigitOf(word[i]);
    const int low = DigitOf(word[i + 1]);
    if (high < 0 || low < 0) return false;
    bytes.push_back(static_cast<std::uint8_t>(high * 16 + low));
  }
  return true;
}

}  // namespace

void Refuse(const LinePlace& place, const LineFault& fault) {
  throw FormatError(place.file + ", line " + std::to_string(place.line) + ": expected " +
                    fault.expected + ", came " + fault.came + ". " + fault.whatToDo + ".");
}

TextLine::TextLine(LinePlace linePlace, std::string_view text) : place_(std::move(linePlace)) {
  Cut(text);
  CutTime();
}

void TextLine::Cut(std::string_view text) {
  std::size_t start = text.find_first_not_of(kBlanks);
  while (start != std::string_view::npos && text[start] != '#') {
    const bool isQuoted = text[start] == '"';
    std::size_t end = isQuoted ? text.find('"', start + 1) : text.find_first_of(kBlanks, start);
    if (isQuoted && end == std::string_view::npos) {
      Refuse(place_,
             {"a text in quotes", std::string(text.substr(start)), "Close the text with a quote"});
    }
    if (isQuoted) ++end;
    if (end == std::string_view::npos) end = text.size();
    words_.emplace_back(text.substr(start, end - start));
    start = text.find_first_not_of(kBlanks, end);
  }
}

void TextLine::CutTime() {
  if (words_.empty() || words_.back().front() != '@') return;
  microseconds_ = ParseSeconds(std::string_view(words_.back()).substr(1));
  if (!microseconds_.has_value()) {
    Refuse(place_, {"a time in seconds with at most six decimals, such as @0.001234",
                    "\"" + words_.back() + "\"", "Correct the time, or take it away"});
  }
  words_.pop_back();
}

const std::string& TextLine::Take(const std::string& expected) {
  if (IsAtEnd()) {
    Refuse(place_, {expected, "the end of the line", "Complete the line, or take it away"});
  }
  return words_[next_++];
}

bool TextLine::TakeIf(std::string_view word) {
  if (IsAtEnd() || words_[next_] != word) return false;
  ++next_;
  return true;
}

std::uint64_t TextLine::TakeNumber(const std::string& expected, unsigned bits) {
  const std::optional<std::uint64_t> value = ParseNumber(Take(expected), bits);
  if (!value.has_value()) {
    RefuseWord(expected, "Write a number of at most " + std::to_string(bits) +
                             " bits, decimal or as 0x and hexadecimal digits");
  }
  return *value;
}

std::uint32_t TextLine::TakeHex(const std::string& expected, std::size_t digits) {
  const std::string& word = Take(expected);
  const std::optional<std::uint64_t> value = ParseDigits(word, 16);
  if (word.size() != digits || !value.has_value()) {
    RefuseWord(expected, "Write " + std::to_string(digits) + " hexadecimal digits");
  }
  return static_cast<std::uint32_t>(*value);
}

void TextLine::TakeBytes(std::vector<std::uint8_t>& bytes) {
  while (!IsAtEnd()) {
    if (!AppendBytes(words_[next_++], bytes)) {
      RefuseWord("bytes of two hexadecimal digits each", "Correct the digits");
    }
  }
}

void TextLine::RequireEnd() {
  if (IsAtEnd()) return;
  ++next_;
  RefuseWord("the end of the line", "Take the rest of the line away, or put # in front of it");
}

void TextLine::RefuseWord(const std::string& expected, const std::string& whatToDo) const {
  Refuse(place_, {expected, "\"" + words_[next_ - 1] + "\"", whatToDo});
}

}  // namespace capture
