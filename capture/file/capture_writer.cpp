#include "capture/file/capture_writer.h"

#include <algorithm>
#include <array>
#include <span>

#include "capture/file/settings_text.h"

namespace capture {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::string_view kTitle = "pmddb832 capture 1\n";
constexpr std::string_view kInCall = "  ";
constexpr std::size_t kTimeColumn = 80;
constexpr std::size_t kRowBytes = 16;       // with a blank between them
constexpr std::size_t kImageRowBytes = 32;  // without
constexpr std::size_t kFractionDigits = 6;

void AppendHex(std::string& text, std::uint64_t value, int digits) {
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
    text += "0123456789ABCDEF"[value >> shift & 0xF];
  }
}

std::string EightDigits(std::uint32_t value) {
  std::string text;
  AppendHex(text, value, 8);
  return text;
}

std::string SecondsText(std::uint64_t microseconds) {
  std::string digits = std::to_string(microseconds);
  if (digits.size() <= kFractionDigits) digits.insert(0, kFractionDigits + 1 - digits.size(), '0');
  return digits.insert(digits.size() - kFractionDigits, ".");
}

// The line with its time in a column of its own, so that a comparison can cut it off.
std::string Timed(std::string line, std::uint64_t microseconds) {
  line.append(line.size() < kTimeColumn ? kTimeColumn - line.size() : 1, ' ');
  return line + "@" + SecondsText(microseconds);
}

void AppendSpaced(std::string& text, Bytes bytes) {
  for (const std::uint8_t byte : bytes) {
    text += ' ';
    AppendHex(text, byte, 2);
  }
}

std::string Rows(Bytes bytes) {
  std::string text;
  for (; !bytes.empty(); bytes = bytes.subspan(std::min(kRowBytes, bytes.size()))) {
    text += "\n    +";
    AppendSpaced(text, bytes.first(std::min(kRowBytes, bytes.size())));
  }
  return text;
}

// How many whole rows, from the second one on, are the same as the first.
std::size_t CountRepetitions(Bytes bytes) {
  std::size_t count = 0;
  const Bytes row = bytes.first(std::min(kImageRowBytes, bytes.size()));
  for (Bytes rest = bytes.subspan(row.size()); rest.size() >= kImageRowBytes;
       rest = rest.subspan(kImageRowBytes)) {
    if (!std::equal(row.begin(), row.end(), rest.begin())) break;
    ++count;
  }
  return count;
}

std::string ImageRows(Bytes bytes) {
  std::string text;
  while (!bytes.empty()) {
    const Bytes row = bytes.first(std::min(kImageRowBytes, bytes.size()));
    const std::size_t repetitions = CountRepetitions(bytes);
    text += "\n    + ";
    for (const std::uint8_t byte : row) AppendHex(text, byte, 2);
    if (repetitions > 0) text += "\n    * " + std::to_string(repetitions);
    bytes = bytes.subspan(row.size() * (repetitions + 1));
  }
  return text;
}

// The line of an entry without its indentation and time, and the rows below it, each behind its
// line feed.
struct Parts {
  std::string line;
  std::string rows;
};

// Few bytes stay on the line.
Parts WithBytes(std::string line, Bytes bytes) {
  line += " :";
  if (bytes.size() > kRowBytes) return {line, Rows(bytes)};
  AppendSpaced(line, bytes);
  return {line, {}};
}

std::string LengthsText(const Transfer& transfer) {
  std::string text(transfer.direction == Direction::kToScanner ? "write " : "read ");
  text += std::to_string(transfer.requested);
  if (transfer.delivered != UsuallyDelivered(transfer)) {
    text += " got " + std::to_string(transfer.delivered);
  }
  if (transfer.result != 0) {
    text += " result " + EightDigits(static_cast<std::uint32_t>(transfer.result));
  }
  return text;
}

std::string ImageText(const Transfer& transfer) {
  std::string text = " crc " + EightDigits(transfer.checksum) + " last ";
  AppendHex(text, transfer.lastByte, 2);
  return text;
}

Parts PartsOf(const Transfer& transfer) {
  const std::string lengths = LengthsText(transfer);
  if (transfer.isImage) {
    const std::string line = lengths + ImageText(transfer);
    if (!transfer.bytes.has_value()) return {line, {}};
    return {line + " :", ImageRows(*transfer.bytes)};
  }
  if (!transfer.bytes.has_value() || transfer.bytes->empty()) return {lengths, {}};
  return WithBytes(lengths, *transfer.bytes);
}

Parts PartsOf(const SettingsChange& change) {
  const std::string place =
      (change.byModule ? "module " : "host ") + std::string(FieldAt(change.offset).name);
  const std::string value = ValueText(change);
  if (!value.empty()) return {place + " = " + value, {}};
  return WithBytes(place, change.bytes);
}

std::string ValuesText(const std::vector<Value>& values) {
  std::string text;
  for (const Value& value : values) text += " " + value.name + "=" + std::to_string(value.value);
  return text;
}

Parts PartsOf(const CallBegin& call) {
  return {"call " + call.name + ValuesText(call.arguments), {}};
}

Parts PartsOf(const CallEnd& call) {
  std::string line = "return " + call.name + ValuesText(call.results);
  if (call.imageChecksum.has_value()) line += " crc " + EightDigits(*call.imageChecksum);
  return {line, {}};
}

struct Formatter {
  std::string operator()(const Transfer& transfer) const {
    const Parts parts = PartsOf(transfer);
    return Timed(std::string(kInCall) + parts.line, transfer.microseconds) + parts.rows + "\n";
  }
  std::string operator()(const SettingsChange& change) const {
    return (change.byModule ? std::string(kInCall) : std::string()) + EntryText(change) + "\n";
  }
  std::string operator()(const CallBegin& call) const {
    return Timed(EntryText(call), call.microseconds) + "\n";
  }
  // A blank line sets the calls apart.
  std::string operator()(const CallEnd& call) const {
    return Timed(EntryText(call), call.microseconds) + "\n\n";
  }
};

}  // namespace

CaptureWriter::CaptureWriter(std::ostream& captureStream, const std::string& remarks)
    : out_(captureStream) {
  out_ << kTitle;
  for (std::size_t start = 0; start < remarks.size();) {
    const std::size_t end = std::min(remarks.find('\n', start), remarks.size());
    out_ << "# " << remarks.substr(start, end - start) << "\n";
    start = end + 1;
  }
  out_ << "\n" << std::flush;
}

void CaptureWriter::Add(const Entry& entry) {
  out_ << FormatEntry(entry) << std::flush;
}

std::string FormatEntry(const Entry& entry) {
  return std::visit(Formatter{}, entry);
}

std::string EntryText(const Entry& entry) {
  const Parts parts = std::visit([](const auto& kind) { return PartsOf(kind); }, entry);
  return parts.line + parts.rows;
}

}  // namespace capture
