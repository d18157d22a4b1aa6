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

std::string HexText(std::uint32_t value) {
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
  return line + "@" + SecondsText(microseconds) + "\n";
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
    text += "    +";
    AppendSpaced(text, bytes.first(std::min(kRowBytes, bytes.size())));
    text += '\n';
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
    text += "    + ";
    for (const std::uint8_t byte : row) AppendHex(text, byte, 2);
    text += '\n';
    if (repetitions > 0) text += "    * " + std::to_string(repetitions) + "\n";
    bytes = bytes.subspan(row.size() * (repetitions + 1));
  }
  return text;
}

// What is behind the colon, and the rows below: few bytes stay on the line.
struct ByteText {
  std::string onLine;
  std::string below;
};

ByteText TextOf(Bytes bytes) {
  ByteText text{" :", {}};
  if (bytes.size() > kRowBytes) {
    text.below = Rows(bytes);
  } else {
    AppendSpaced(text.onLine, bytes);
  }
  return text;
}

std::uint32_t UsuallyDelivered(const Transfer& transfer) {
  const bool failedWrite = transfer.direction == Direction::kToScanner && transfer.result < 0;
  return failedWrite ? 0 : transfer.requested;
}

std::string LengthsText(const Transfer& transfer) {
  std::string text(transfer.direction == Direction::kToScanner ? "write " : "read ");
  text += std::to_string(transfer.requested);
  if (transfer.delivered != UsuallyDelivered(transfer)) {
    text += " got " + std::to_string(transfer.delivered);
  }
  if (transfer.result != 0) {
    text += " result " + HexText(static_cast<std::uint32_t>(transfer.result));
  }
  return text;
}

std::string ImageText(const Transfer& transfer) {
  std::string text = " crc " + HexText(transfer.checksum) + " last ";
  AppendHex(text, transfer.lastByte, 2);
  return text;
}

// The line without its indentation and time, and the rows below it.
ByteText Parts(const Transfer& transfer) {
  ByteText parts{LengthsText(transfer), {}};
  if (transfer.isImage) {
    parts.onLine += ImageText(transfer);
    if (!transfer.bytes.has_value()) return parts;
    return {parts.onLine + " :", ImageRows(*transfer.bytes)};
  }
  if (!transfer.bytes.has_value() || transfer.bytes->empty()) return parts;
  const ByteText bytes = TextOf(*transfer.bytes);
  return {parts.onLine + bytes.onLine, bytes.below};
}

ByteText Parts(const RecordChange& change) {
  const std::string place =
      (change.byModule ? "module " : "host ") + std::string(FieldAt(change.offset).name);
  const std::string value = ValueText(change);
  if (!value.empty()) return {place + " = " + value, {}};
  const ByteText bytes = TextOf(change.bytes);
  return {place + bytes.onLine, bytes.below};
}

std::string ValuesText(const std::vector<Value>& values) {
  std::string text;
  for (const Value& value : values) text += " " + value.name + "=" + std::to_string(value.value);
  return text;
}

ByteText Parts(const CallBegin& call) {
  return {"call " + call.name + ValuesText(call.arguments), {}};
}

ByteText Parts(const CallEnd& call) {
  std::string line = "return " + call.name + ValuesText(call.results);
  if (call.imageChecksum.has_value()) line += " crc " + HexText(*call.imageChecksum);
  return {line, {}};
}

struct Formatter {
  std::string operator()(const Transfer& transfer) const {
    const ByteText parts = Parts(transfer);
    return Timed(std::string(kInCall) + parts.onLine, transfer.microseconds) + parts.below;
  }
  std::string operator()(const RecordChange& change) const {
    const ByteText parts = Parts(change);
    return (change.byModule ? std::string(kInCall) : std::string()) + parts.onLine + "\n" +
           parts.below;
  }
  std::string operator()(const CallBegin& call) const {
    return Timed(Parts(call).onLine, call.microseconds);
  }
  // A blank line sets the calls apart.
  std::string operator()(const CallEnd& call) const {
    return Timed(Parts(call).onLine, call.microseconds) + "\n";
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

std::string Headline(const Entry& entry) {
  return std::visit([](const auto& kind) { return Parts(kind).onLine; }, entry);
}

}  // namespace capture
