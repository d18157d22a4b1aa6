#include "tests/wireshark/dissector_tables.h"

#include <array>
#include <cstdio>
#include <span>

#include "capture/decode/decode_commands.h"
#include "wire/reply_shapes.h"
#include "wire/value_names.h"

namespace pmddb832::tests {
namespace {

constexpr std::array kShapes{"number", "signed", "choice", "flags", "code", "text", "position"};

std::string Quoted(std::string_view text) {
  return '"' + std::string(text) + '"';
}

std::string Hex(std::uint32_t value) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "0x%02X", static_cast<unsigned>(value));
  return text.data();
}

std::string Names(std::span<const ValueName> names) {
  if (names.empty()) return {};
  std::string text = ",\n      names = {";
  for (const ValueName& name : names) {
    text += "\n        {" + Hex(name.value) + ", " + Quoted(name.name) +
            (name.isTrouble ? ", trouble = true}," : "},");
  }
  return text + "\n      }";
}

std::string Fields(std::span<const NamedField> fields) {
  std::string text;
  for (const NamedField& field : fields) {
    text += "    {name = " + Quoted(field.name) + ", offset = " + std::to_string(field.offset) +
            ", width = " + std::to_string(field.width) +
            ", shape = " + Quoted(kShapes.at(static_cast<std::size_t>(field.shape)));
    if (!field.unit.empty()) text += ", unit = " + Quoted(field.unit);
    text += Names(field.names) + "},\n";
  }
  return text;
}

std::string Command(const CommandShape& command) {
  const auto key = static_cast<std::uint32_t>(command.prefix << 8 | command.letter);
  return "  [" + Hex(key) + "] = {letters = " + Quoted(capture::Letters(command)) +
         ", name = " + Quoted(command.name) +
         ", reply = " + Quoted(ReplyShapeOf(command.reply).name) +
         ",\n    parameters = " + std::to_string(command.parameterBytes) + ",\n" +
         Fields(command.parameters) + "  },\n";
}

std::string Reply(const ReplyShape& reply) {
  return "  " + std::string(reply.name) + " = {size = " + std::to_string(reply.firstRead) + ",\n" +
         Fields(reply.fields) + "  },\n";
}

}  // namespace

std::string DissectorTables() {
  std::string text = "local COMMANDS = {\n";
  for (const CommandShape& command : kCommandTable) text += Command(command);
  text += "}\n\nlocal REPLIES = {\n";
  for (const ReplyShape& reply : kReplyShapes) text += Reply(reply);
  text += "}\n\nlocal CONTROL_BYTES = {\n";
  for (const ValueName& name : names::kControlBytes) {
    text += "  [" + Hex(name.value) + "] = " + Quoted(name.name) + ",\n";
  }
  return text + "}\n";
}

}  // namespace pmddb832::tests
