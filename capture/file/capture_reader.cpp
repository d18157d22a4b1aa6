#include "capture/file/capture_reader.h"

#include "capture/file/capture_writer.h"
#include "capture/file/crc32.h"
#include "capture/file/number_text.h"
#include "capture/file/settings_text.h"
#include "capture/file/text_lines.h"

namespace capture {
namespace {

using Bytes = std::vector<std::uint8_t>;
using pmddb832::SettingsField;

constexpr std::size_t kChecksumDigits = 8;

class Reader {
 public:
  Reader(std::istream& text, const std::string& fileName) : lines_(text, fileName) {}

  Capture Read() {
    ReadTitle();
    while (std::optional<TextLine> line = lines_.Take()) {
      if (line->Microseconds().has_value()) now_ = *line->Microseconds();
      result_.lines.push_back(line->Place().line);
      result_.entries.push_back(ReadEntry(*line));
    }
    return std::move(result_);
  }

 private:
  void ReadTitle() {
    constexpr const char* kExpected = "\"pmddb832 capture 1\", the first line of every capture";
    std::optional<TextLine> line = lines_.Take();
    if (!line.has_value()) {
      Refuse(lines_.End(), {kExpected, "the end of the file", "Name a file that holds a capture"});
    }
    for (const char* word : {"pmddb832", "capture", "1"}) {
      if (line->Take(kExpected) != word) {
        line->RefuseWord(kExpected, "Name a file that pmscan --capture wrote");
      }
    }
    line->RequireEnd();
  }

  Entry ReadEntry(TextLine& line) {
    const std::string expected = "host, call, write, read, module or return";
    const std::string& word = line.Take(expected);
    if (word == "write") return ReadTransfer(line, Direction::kToScanner);
    if (word == "read") return ReadTransfer(line, Direction::kFromScanner);
    if (word == "host") return ReadChange(line, false);
    if (word == "module") return ReadChange(line, true);
    if (word == "call") return ReadCall(line);
    if (word == "return") return ReadReturn(line);
    line.RefuseWord(expected, "Correct the word, or put # in front of the line");
  }

  Transfer ReadTransfer(TextLine& line, Direction direction) {
    Transfer transfer;
    transfer.direction = direction;
    transfer.microseconds = now_;
    ReadLengths(line, transfer);
    if (line.TakeIf("crc")) return ReadImage(line, std::move(transfer));
    const bool isWrite = direction == Direction::kToScanner;
    const std::uint32_t expected = isWrite ? transfer.requested : transfer.delivered;
    transfer.bytes = expected == 0 && line.IsAtEnd() ? Bytes() : ReadBytes(line, expected);
    transfer.checksum = Crc32(*transfer.bytes);
    return transfer;
  }

  static void ReadLengths(TextLine& line, Transfer& transfer) {
    transfer.requested = TakeLength(line, "how many bytes the module asked to move");
    const bool tellsDelivered = line.TakeIf("got");
    if (tellsDelivered) transfer.delivered = TakeLength(line, "how many bytes came");
    if (transfer.delivered > transfer.requested) {
      line.RefuseWord("at most the " + Counted(transfer.requested, "byte") + " that were asked for",
                      "Correct one of the lengths");
    }
    if (line.TakeIf("result")) {
      transfer.result =
          static_cast<std::int32_t>(line.TakeHex("the device interface's result", kChecksumDigits));
    }
    if (!tellsDelivered) transfer.delivered = UsuallyDelivered(transfer);
  }

  static std::uint32_t TakeLength(TextLine& line, const char* expected) {
    return static_cast<std::uint32_t>(line.TakeNumber(expected, 32));
  }

  Transfer ReadImage(TextLine& line, Transfer transfer) {
    const LinePlace place = line.Place();
    transfer.isImage = true;
    transfer.checksum = line.TakeHex("the CRC-32 of the bytes", kChecksumDigits);
    constexpr const char* kExpected = "last, and the last byte";
    if (line.Take(kExpected) != "last") {
      line.RefuseWord(kExpected, "Write the last byte of the block there");
    }
    transfer.lastByte = static_cast<std::uint8_t>(line.TakeHex("the last byte", 2));
    if (line.IsAtEnd()) return transfer;
    transfer.bytes = ReadBytes(line, transfer.delivered);
    RequireChecksum(place, transfer);
    return transfer;
  }

  static void RequireChecksum(const LinePlace& place, const Transfer& transfer) {
    const std::uint32_t came = Crc32(*transfer.bytes);
    const std::uint8_t last = transfer.bytes->empty() ? std::uint8_t{0} : transfer.bytes->back();
    if (came == transfer.checksum && last == transfer.lastByte) return;
    Transfer corrected = transfer;
    corrected.checksum = came;
    corrected.lastByte = last;
    corrected.bytes.reset();
    Refuse(place, {"the checksum and the last byte of the bytes below", "others",
                   "Make the line \"" + EntryText(corrected) + " :\" if the bytes are right"});
  }

  Bytes ReadBytes(TextLine& line, std::size_t expected) {
    const std::string wanted = "a colon and " + Counted(expected, "byte");
    if (line.Take(wanted) != ":") line.RefuseWord(wanted, "Put a colon in front of the bytes");
    return TakeByteRows(lines_, line, expected);
  }

  SettingsChange ReadChange(TextLine& line, bool byModule) {
    const SettingsField& field = TakeField(line);
    SettingsChange change{byModule, static_cast<std::uint32_t>(field.offset), {}};
    change.bytes = line.TakeIf("=") ? ReadValue(line, field) : ReadBytes(line, field.width);
    return change;
  }

  static const SettingsField& TakeField(TextLine& line) {
    const std::string expected = "a member of the settings record that is no pointer";
    const SettingsField* const field = FindField(line.Take(expected));
    if (field != nullptr && FormOf(*field) != ValueForm::kPointer) return *field;
    line.RefuseWord(expected, "The members are listed in interface/scanner_settings.h");
  }

  static Bytes ReadValue(TextLine& line, const SettingsField& field) {
    std::optional<Bytes> value = ParseValue(field, line.Take(ExpectedValue(field)));
    if (!value.has_value()) line.RefuseWord(ExpectedValue(field), "Correct the value");
    line.RequireEnd();
    return *std::move(value);
  }

  CallBegin ReadCall(TextLine& line) {
    RequireNoOpenCall(line);
    openCall_ = result_.entries.size();
    CallBegin call{line.Take("the name of an export"), {}, now_};
    while (!line.IsAtEnd()) call.arguments.push_back(TakeValue(line));
    return call;
  }

  CallEnd ReadReturn(TextLine& line) {
    CallEnd call;
    call.name = line.Take("the name of an export");
    call.microseconds = now_;
    RequireOpenCall(line, call.name);
    openCall_.reset();
    while (!line.IsAtEnd() && !call.imageChecksum.has_value()) {
      if (line.TakeIf("crc")) {
        call.imageChecksum = line.TakeHex("the CRC-32 of the lines", kChecksumDigits);
      } else {
        call.results.push_back(TakeValue(line));
      }
    }
    line.RequireEnd();
    return call;
  }

  const std::string& OpenCall() const {
    return std::get<CallBegin>(result_.entries[*openCall_]).name;
  }

  // "the return of PMFeed, which line 2 calls".
  std::string OpenCallsReturn() const {
    return "the return of " + OpenCall() + ", which line " +
           std::to_string(result_.lines[*openCall_]) + " calls";
  }

  void RequireOpenCall(const TextLine& line, const std::string& name) const {
    if (!openCall_.has_value()) {
      line.RefuseWord("a call in front of its return", "Add the call, or take the line away");
    }
    if (OpenCall() != name) line.RefuseWord(OpenCallsReturn(), "Correct one of the two lines");
  }

  void RequireNoOpenCall(const TextLine& line) const {
    if (!openCall_.has_value()) return;
    Refuse(line.Place(),
           {OpenCallsReturn(), "a call", "Add the return, or take one of the calls away"});
  }

  static Value TakeValue(TextLine& line) {
    const std::string& word = line.Take("NAME=NUMBER");
    const std::size_t equals = word.find('=');
    const std::optional<std::uint64_t> number =
        equals == std::string::npos ? std::nullopt : ParseNumber(word.substr(equals + 1), 32);
    if (!number.has_value() || equals == 0) {
      line.RefuseWord("NAME=NUMBER", "Write both without a blank between them");
    }
    return {word.substr(0, equals), static_cast<std::uint32_t>(*number)};
  }

  TextLines lines_;
  Capture result_;
  std::optional<std::size_t> openCall_;  // the entry of the call that has not returned
  std::uint64_t now_ = 0;                // an entry without a time has that of the one before
};

}  // namespace

Capture ReadCapture(std::istream& text, const std::string& fileName) {
  return Reader(text, fileName).Read();
}

}  // namespace capture
