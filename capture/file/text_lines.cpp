#include "capture/file/text_lines.h"

#include <utility>

#include "capture/file/number_text.h"

namespace capture {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

class ByteRows {
 public:
  explicit ByteRows(std::size_t expectedBytes) : expected_(expectedBytes) {}

  void TakeFirst(TextLine& line) {
    line.TakeBytes(bytes_);
    RequireRoom(line);
  }

  // False when the line is no row.
  bool Take(TextLine& line) {
    if (line.TakeIf("*")) {
      Repeat(line);
      return true;
    }
    if (!line.TakeIf("+")) return false;
    rowStart_ = bytes_.size();
    TakeFirst(line);
    return true;
  }

  std::vector<std::uint8_t> Finish(const LinePlace& place) {
    if (bytes_.size() != expected_) RefuseLength(place, Counted(bytes_.size(), "byte"));
    return std::move(bytes_);
  }

 private:
  void Repeat(TextLine& line) {
    const std::uint64_t times = line.TakeNumber("how often the row above comes again", 32);
    line.RequireEnd();
    const std::vector<std::uint8_t> row(bytes_.begin() + static_cast<std::ptrdiff_t>(rowStart_),
                                        bytes_.end());
    if (row.empty()) {
      Refuse(line.Place(), {"a row of bytes in front of *", "none", "Put the row there, behind +"});
    }
    if (times > (expected_ - bytes_.size()) / row.size()) RefuseLength(line.Place(), "more");
    for (std::uint64_t i = 0; i < times; ++i) bytes_.insert(bytes_.end(), row.begin(), row.end());
  }

  void RequireRoom(const TextLine& line) const {
    if (bytes_.size() > expected_) RefuseLength(line.Place(), "more");
  }

  [[noreturn]] void RefuseLength(const LinePlace& place, const std::string& came) const {
    Refuse(place, {Counted(expected_, "byte"), came,
                   "Correct the bytes, or the length that the entry tells"});
  }

  const std::size_t expected_;
  std::vector<std::uint8_t> bytes_;
  std::size_t rowStart_ = 0;
};

}  // namespace

TextLines::TextLines(std::istream& captureText, std::string fileName)
    : text_(captureText), place_{std::move(fileName), 0} {}

std::optional<TextLine> TextLines::Take() {
  if (waiting_.has_value()) return std::exchange(waiting_, std::nullopt);
  for (std::string read; std::getline(text_, read);) {
    ++place_.line;
    std::string_view shown = read;
    if (place_.line == 1 && shown.starts_with(kUtf8Mark)) shown.remove_prefix(kUtf8Mark.size());
    TextLine line(place_, shown);
    if (!line.IsAtEnd()) return line;
  }
  return std::nullopt;
}

std::vector<std::uint8_t> TakeByteRows(TextLines& lines, TextLine& line, std::size_t expected) {
  ByteRows rows(expected);
  rows.TakeFirst(line);
  while (std::optional<TextLine> row = lines.Take()) {
    if (!rows.Take(*row)) {
      lines.Return(*std::move(row));
      break;
    }
  }
  return rows.Finish(line.Place());
}

}  // namespace capture
