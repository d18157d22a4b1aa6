#include <doctest/doctest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <span>
#include <utility>
#include <vector>

#include "wire/reply_shapes.h"
#include "wire/value_names.h"

namespace pmddb832::tests {
namespace {

constexpr std::size_t kWidth = 100;
constexpr std::array kShapes{"number", "signed", "choice", "flags", "code", "text", "position"};

std::string Quoted(std::string_view text) {
  return '"' + std::string(text) + '"';
}

std::string Hex(std::uint32_t value) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "0x%02X", static_cast<unsigned>(value));
  return text.data();
}

// "main status" as a key of a Lua table.
std::string Key(std::string_view text) {
  std::string key(text);
  std::replace(key.begin(), key.end(), ' ', '_');
  return key;
}

std::string Names(std::span<const ValueName> names, const std::string& before,
                  const std::string& behind) {
  std::string text;
  for (const ValueName& name : names) {
    text += before + "{" + Hex(name.value) + ", " + Quoted(name.name) +
            (name.isTrouble ? ", trouble = true}" : "}") + behind;
  }
  return text;
}

// The names of values, each list once, under the name of the first field that has it.
class NameLists {
 public:
  std::string KeyOf(const NamedField& field) {
    for (const auto& [list, key] : keys_) {
      if (list == field.names.data()) return key;
    }
    std::string key = Key(field.name);
    const auto isTaken = [&](const auto& one) { return one.second == key; };
    while (std::any_of(keys_.begin(), keys_.end(), isTaken)) key += "_2";
    keys_.emplace_back(field.names.data(), key);
    Add(key, field.names);
    return key;
  }
  const std::string& Text() const { return text_; }

 private:
  void Add(const std::string& key, std::span<const ValueName> names) {
    std::string line = "  " + key + " = {" + Names(names, "", ", ");
    line.resize(line.size() - 2);
    line += "},\n";
    text_ += line.size() <= kWidth ? line
                                   : "  " + key + " = {\n" + Names(names, "    ", ",\n") + "  },\n";
  }

  std::vector<std::pair<const ValueName*, std::string>> keys_;
  std::string text_;
};

// A field has one byte where nothing is said of its width.
std::string Field(const NamedField& field, NameLists& lists) {
  std::string text = "{name = " + Quoted(field.name) + ", offset = " + std::to_string(field.offset);
  if (field.width != 1) text += ", width = " + std::to_string(field.width);
  text += ", shape = " + Quoted(kShapes.at(static_cast<std::size_t>(field.shape)));
  if (!field.unit.empty()) text += ", unit = " + Quoted(field.unit);
  if (!field.names.empty()) text += ", names = NAMES." + lists.KeyOf(field);
  return text + "}";
}

// A table that begins with the text, and the fields in it: a single one on the same line if it
// fits.
std::string Row(const std::string& begin, std::span<const NamedField> fields, NameLists& lists) {
  std::string text = begin;
  for (const NamedField& field : fields) {
    const std::string row = Field(field, lists);
    const bool fits = fields.size() == 1 && begin.size() + row.size() + 4 <= kWidth;
    text += (fits ? ", " : ",\n    ") + row;
  }
  return text + "},\n";
}

// Commands with parameters are acknowledged.
std::string Command(const CommandShape& command, NameLists& lists) {
  const auto key = static_cast<std::uint32_t>(command.prefix << 8 | command.letter);
  const std::string shape = command.parameterBytes != 0
                                ? ", parameters = " + std::to_string(command.parameterBytes)
                                : ", reply = " + Quoted(ReplyShapeOf(command.reply).name);
  return Row("  [" + Hex(key) + "] = {name = " + Quoted(command.name) + shape, command.parameters,
             lists);
}

std::string Reply(const ReplyShape& reply, NameLists& lists) {
  return Row("  " + std::string(reply.name) + " = {size = " + std::to_string(reply.firstRead) +
                 (reply.declaresData ? ", declares_data = true" : ""),
             reply.fields, lists);
}

// The commands, fields and names that the module and the tools know, as the tables of the
// dissector: Lua source.
std::string DissectorTables() {
  NameLists lists;
  std::string text = "}\n\nlocal COMMANDS = {\n";
  for (const CommandShape& command : kCommandTable) text += Command(command, lists);
  text += "}\n\nlocal REPLIES = {\n";
  for (const ReplyShape& reply : kReplyShapes) text += Reply(reply, lists);
  text += "}\n\nlocal CONTROL_BYTES = {\n";
  for (const ValueName& name : names::kControlBytes) {
    text += "  [" + Hex(name.value) + "] = " + Quoted(name.name) + ",\n";
  }
  return "local NAMES = {\n" + lists.Text() + text + "}\n";
}

constexpr const char* kBegin = "-- tables begin\n";
constexpr const char* kEnd = "-- tables end\n";
constexpr const char* kExpectedFile = "dissector_tables.lua";  // in the build folder

std::string TextBetweenMarks() {
  std::ifstream file(PMDDB832_DISSECTOR);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  const std::size_t begin = text.find(kBegin);
  const std::size_t end = text.find(kEnd);
  REQUIRE(begin != std::string::npos);
  REQUIRE(end != std::string::npos);
  const std::size_t first = begin + std::string(kBegin).size();
  return text.substr(first, end - first);
}

// What names a field differently in Wireshark and in "pmscan decode" is found here.
TEST_CASE("the dissector has the tables of the module and the tools") {
  const std::string expected = DissectorTables();
  if (TextBetweenMarks() == expected) return;
  std::ofstream(kExpectedFile) << expected;
  FAIL("put the text of ", kExpectedFile, " between the marks in ", PMDDB832_DISSECTOR);
}

}  // namespace
}  // namespace pmddb832::tests
