#include <doctest/doctest.h>

#include <fstream>
#include <sstream>

#include "capture/calls/export_table.h"
#include "capture/file/capture_reader.h"
#include "capture/file/capture_writer.h"
#include "capture/file/crc32.h"

namespace {

using namespace capture;
using Bytes = std::vector<std::uint8_t>;

Capture Read(const std::string& text) {
  std::istringstream stream("pmddb832 capture 1\n" + text);
  return ReadCapture(stream, "test.txt");
}

template <class Kind>
Kind ReadOne(const std::string& text) {
  const Capture capture = Read(text);
  REQUIRE(capture.entries.size() == 1);
  REQUIRE(std::holds_alternative<Kind>(capture.entries[0]));
  return std::get<Kind>(capture.entries[0]);
}

// An entry whose text is `text`, and which that text gives again.
template <class Kind>
void CheckRoundTrip(const Kind& entry, const std::string& text) {
  CHECK(FormatEntry(entry) == text);
  CHECK(ReadOne<Kind>(text) == entry);
}

Transfer MakeWrite(const Bytes& bytes) {
  const auto size = static_cast<std::uint32_t>(bytes.size());
  return {Direction::kToScanner, size, size, 0, 1234, bytes, Crc32(bytes), false, 0};
}

Transfer MakeRead(std::uint32_t requested, const Bytes& bytes) {
  const auto size = static_cast<std::uint32_t>(bytes.size());
  return {Direction::kFromScanner, requested, size, 0, 1234, bytes, Crc32(bytes), false, 0};
}

TEST_CASE("capture: the checksum is CRC-32, and can be summed in pieces") {
  const Bytes digits{'1', '2', '3', '4', '5', '6', '7', '8', '9'};
  CHECK(Crc32(digits) == 0xCBF43926);
  CHECK(Crc32(std::span(digits).subspan(4), Crc32(std::span(digits).first(4))) == 0xCBF43926);
  CHECK(Crc32({}) == 0);
}

TEST_CASE("capture: a write is its length and its bytes, with the time in a column of its own") {
  CheckRoundTrip(MakeWrite({0x1C, 0x49}),
                 "  write 2 : 1C 49                                                               "
                 "@0.001234\n");
}

TEST_CASE("capture: what a read delivers less than it asked for stands behind got") {
  Transfer read = MakeRead(4, {0x02});
  read.result = static_cast<std::int32_t>(0x80070079);
  CheckRoundTrip(read,
                 "  read 4 got 1 result 80070079 : 02                                             "
                 "@0.001234\n");
}

TEST_CASE("capture: a failed read without bytes needs no colon") {
  Transfer read = MakeRead(4, {});
  read.result = -1;
  CheckRoundTrip(read,
                 "  read 4 got 0 result FFFFFFFF                                                  "
                 "@0.001234\n");
}

TEST_CASE("capture: a failed write counts as nothing, and keeps what it was given") {
  Transfer write = MakeWrite({0x06});
  write.delivered = 0;
  write.result = -1;
  CheckRoundTrip(write,
                 "  write 1 result FFFFFFFF : 06                                                  "
                 "@0.001234\n");
}

TEST_CASE("capture: more than sixteen bytes stand in rows of sixteen") {
  Bytes bytes(18, 0xFF);
  bytes[16] = 0x01;
  CheckRoundTrip(
      MakeRead(18, bytes),
      "  read 18 :                                                                     @0.001234\n"
      "    + FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF\n"
      "    + 01 FF\n");
}

TEST_CASE("capture: image data is its length, its checksum and its last byte") {
  Transfer read = MakeRead(65281, {});
  read.delivered = 65281;
  read.bytes.reset();
  read.checksum = 0x12AB;
  read.isImage = true;
  read.lastByte = 0x80;
  CheckRoundTrip(read,
                 "  read 65281 crc 000012AB last 80                                               "
                 "@0.001234\n");
}

TEST_CASE("capture: kept image data stands in dense rows, equal ones folded") {
  Bytes bytes(130, 0xA5);
  bytes.back() = 0;
  Transfer read = MakeRead(130, bytes);
  read.isImage = true;
  const std::string row =
      "    + A5A5A5A5A5A5A5A5A5A5A5A5A5A5A5A5A5A5A5A5A5A5A5A5A5A5A5A5A5A5A5A5\n";
  CheckRoundTrip(read,
                 "  read 130 crc D31F5753 last 00 :                                               "
                 "@0.001234\n" +
                     row + "    * 3\n    + A500\n");
}

TEST_CASE("capture: a number of the settings record stands by its member's name") {
  CheckRoundTrip(SettingsChange{false, 186, {0x2C, 0x01}}, "host resolution = 300\n");
  CheckRoundTrip(SettingsChange{true, 0, {8, 0, 0, 0}}, "  module commandLevel = 8\n");
}

TEST_CASE("capture: signed numbers, real numbers and texts of the record stand as such") {
  CheckRoundTrip(SettingsChange{false, 228, {0xFE, 0xFF, 0xFF, 0xFF}}, "host brightness = -2\n");
  CheckRoundTrip(SettingsChange{false, 208, {0, 0, 0, 0, 0, 0, 0xE0, 0x3F}},
                 "host originX = 0.5\n");
  CheckRoundTrip(SettingsChange{true, 8, {'Q', 'M', ' ', '#', '1', 0, 0, 0}},
                 "  module modelName = \"QM #1\"\n");
}

TEST_CASE("capture: a text that is not zero-terminated blanks and letters stands as bytes") {
  CheckRoundTrip(SettingsChange{true, 8, {'Q', 0, 'x', 0, 0, 0, 0, 0}},
                 "  module modelName : 51 00 78 00 00 00 00 00\n");
}

TEST_CASE("capture: tables of the record stand as bytes") {
  CheckRoundTrip(SettingsChange{false, 1340, {1, 2, 3, 4, 5, 6, 7, 8, 9}},
                 "host colorMatrix : 01 02 03 04 05 06 07 08 09\n");
}

TEST_CASE("capture: a call is its name and its arguments, and a return its results") {
  CheckRoundTrip(CallBegin{"PMSetFocus", {{"mode", 0}, {"position", 64}}, 2500000},
                 "call PMSetFocus mode=0 position=64                                              "
                 "@2.500000\n");
  const Capture capture = Read("call PMReset\nreturn PMReset result=1 @3.5\n");
  CHECK(std::get<CallEnd>(capture.entries[1]) == CallEnd{"PMReset", {{"result", 1}}, {}, 3500000});
}

TEST_CASE("capture: the checksum of the delivered lines stands behind the results") {
  const CallEnd end{"PMAcquireImage", {{"lines", 2}}, 0xCBF43926, 0};
  CHECK(FormatEntry(end) ==
        "return PMAcquireImage lines=2 crc CBF43926                                      "
        "@0.000000\n\n");
  const Capture capture = Read("call PMAcquireImage\n" + FormatEntry(end));
  CHECK(std::get<CallEnd>(capture.entries[1]) == end);
}

TEST_CASE("capture: comments, blank lines, tabs and carriage returns say nothing") {
  CHECK(ReadOne<Transfer>("# a remark\r\n\n\twrite 0x2 : 1c 49 # the identity\r\n").bytes ==
        Bytes{0x1C, 0x49});
}

TEST_CASE("capture: an entry without a time has that of the entry in front of it") {
  const Capture capture = Read("call PMReset @1.25\nwrite 1 : 06\n");
  CHECK(std::get<Transfer>(capture.entries[1]).microseconds == 1250000);
}

TEST_CASE("capture: each entry tells its line") {
  const Capture capture = Read("\ncall PMReset\nread 2 :\n + 06\n + 06\nwrite 1 : 06\n");
  CHECK(capture.lines == std::vector<std::uint32_t>{3, 4, 7});
}

TEST_CASE("capture: the writer begins with the title and the remarks") {
  std::ostringstream stream;
  CaptureWriter writer(stream, "device sim:extended\nsecond line");
  writer.Add(SettingsChange{false, 186, {0x2C, 0x01}});
  CHECK(stream.str() ==
        "pmddb832 capture 1\n# device sim:extended\n# second line\n\nhost resolution = 300\n");
  CHECK(writer.IsGood());
}

TEST_CASE("capture: the document's example is one") {
  std::ifstream document(PMDDB832_CAPTURE_DOCUMENT);
  REQUIRE(document.is_open());
  std::string example;
  for (std::string line; std::getline(document, line);) {
    if (line == "```" && !example.empty()) break;
    if (line == "pmddb832 capture 1" || !example.empty()) example += line + "\n";
  }
  std::istringstream stream(example);
  CHECK(ReadCapture(stream, "capture-format.md").entries.size() > 10);
}

// A cell of the document's table, with the blank in front of it.
std::string Cell(std::span<const ValueShape> values) {
  std::string text;
  for (const ValueShape& value : values) text += " `" + std::string(value.name) + "`";
  return text + " |";
}

TEST_CASE("capture: the document's table of calls has every export, argument and result") {
  std::string expected;
  for (const ExportRow& row : kExports) {
    expected += "| `" + std::string(row.name) + "` |" + Cell(row.arguments) + Cell(row.results);
    expected += "\n";
  }
  std::ifstream document(PMDDB832_CAPTURE_DOCUMENT);
  std::string table;
  for (std::string line; std::getline(document, line);) {
    if (line.starts_with("| `PM")) table += line + "\n";
  }
  CHECK(table == expected);
}

}  // namespace
