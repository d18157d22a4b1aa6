#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <optional>
#include <string>
#include <vector>

#include "capture/file/text_line.h"

namespace capture {

// The lines of a text that say something: empty ones and comments are left out.
class TextLines {
 public:
  // `fileName` is for messages. The text outlives this.
  TextLines(std::istream& captureText, std::string fileName);

  // The next line; nothing at the end of the text. Throws FormatError.
  std::optional<TextLine> Take();

  // The line that was taken last comes again.
  void Return(TextLine line) { waiting_ = std::move(line); }

  // Behind the last line.
  LinePlace End() const { return {place_.file, place_.line + 1}; }

 private:
  std::istream& text_;
  LinePlace place_;
  std::optional<TextLine> waiting_;
};

// Takes exactly the expected number of bytes: the rest of `line`, and the rows that follow it ("+"
// and bytes; "*" and how often the row above comes again). Throws FormatError.
std::vector<std::uint8_t> TakeByteRows(TextLines& lines, TextLine& line, std::size_t expected);

}  // namespace capture
