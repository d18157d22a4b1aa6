#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace capture {

// A capture file that cannot be understood. what() names the file and the line, and says what was
// expected, what came and what to do.
class FormatError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Where a line stands, for messages.
struct LinePlace {
  std::string file;
  std::uint32_t line = 0;  // from 1
};

// What is wrong with a line: nouns and sentences without the full stop.
struct LineFault {
  std::string expected;
  std::string came;
  std::string whatToDo;
};

// Throws FormatError.
[[noreturn]] void Refuse(const LinePlace& place, const LineFault& fault);

// One line of a capture, cut at its blanks into words. A text in quotes is one word, with its
// quotes. A word that begins with # begins a comment, and a last word that begins with @ is the
// time; both are taken away first.
class TextLine {
 public:
  // Throws FormatError for an open quote and for a time that is none.
  TextLine(LinePlace linePlace, std::string_view text);

  // Nothing is left, or nothing was there.
  bool IsAtEnd() const { return next_ == words_.size(); }

  // Takes the next word; `expected` says what it should be, for the error where there is none.
  const std::string& Take(const std::string& expected);
  bool TakeIf(std::string_view word);

  // Takes a number of at most `bits` bits: decimal, or hexadecimal behind 0x.
  std::uint64_t TakeNumber(const std::string& expected, unsigned bits);
  // Takes one hexadecimal number of exactly `digits` digits.
  std::uint32_t TakeHex(const std::string& expected, std::size_t digits);
  // Takes all that is left as bytes: hexadecimal digits, two a byte, with or without blanks.
  void TakeBytes(std::vector<std::uint8_t>& bytes);

  void RequireEnd();

  // Refuses the word that was taken last.
  [[noreturn]] void RefuseWord(const std::string& expected, const std::string& whatToDo) const;

  const LinePlace& Place() const { return place_; }
  std::optional<std::uint64_t> Microseconds() const { return microseconds_; }

 private:
  void Cut(std::string_view text);
  void CutTime();

  LinePlace place_;
  std::vector<std::string> words_;
  std::size_t next_ = 0;
  std::optional<std::uint64_t> microseconds_;
};

}  // namespace capture
