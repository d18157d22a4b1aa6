#include "tests/wireshark/dissector_tables.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <span>

#include "capture/decode/decode_commands.h"
#include "capture/decode/decode_replies.h"
#include "wire/value_names.h"

namespace pmddb832::tests {
namespace {

using capture::CommandRow;
using capture::ReplyKind;

struct ReplyName {
  ReplyKind kind;
  const char* name;
};
constexpr std::array kReplyNames{
    ReplyName{ReplyKind::kAcknowledge, "acknowledge"},
    ReplyName{ReplyKind::kLevel, "level"},
    ReplyName{ReplyKind::kProduct, "product"},
    ReplyName{ReplyKind::kStatusReply, "status_reply"},
    ReplyName{ReplyKind::kFocus, "focus"},
    ReplyName{ReplyKind::kHeaderOnly, "condition"},
    ReplyName{ReplyKind::kIdentityBlock, "identity"},
    ReplyName{ReplyKind::kStatusBlock, "status"},
    ReplyName{ReplyKind::kTransferHeader, "transfer_header"},
    ReplyName{ReplyKind::kBlockHeader, "block_header"},
};
constexpr std::array kShapes{"number", "signed", "choice", "flags", "code", "text", "position"};

std::string Quoted(std::string_view text) {
  return '"' + std::string(text) + '"';
}

std::string Hex(std::uint32_t value) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "0x%02X", static_cast<unsigned>(value));
  return text.data();
}

std::string ReplyNameOf(ReplyKind kind) {
  const auto* const row = std::find_if(kReplyNames.begin(), kReplyNames.end(),
                                       [kind](const ReplyName& name) { return name.kind == kind; });
  return row->name;
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

std::string Command(const CommandRow& command) {
  const auto key = static_cast<std::uint32_t>(command.prefix << 8 | command.letter);
  return "  [" + Hex(key) + "] = {letters = " + Quoted(capture::Letters(command)) +
         ", name = " + Quoted(command.name) + ", reply = " + Quoted(ReplyNameOf(command.reply)) +
         ",\n    parameters = " + std::to_string(command.parameterBytes) + ",\n" +
         Fields(command.parameters) + "  },\n";
}

std::string Reply(const ReplyName& reply) {
  return "  " + std::string(reply.name) +
         " = {size = " + std::to_string(capture::FirstReadBytes(reply.kind)) + ",\n" +
         Fields(capture::ReplyFields(reply.kind)) + "  },\n";
}

}  // namespace

std::string DissectorTables() {
  std::string text = "local COMMANDS = {\n";
  for (const CommandRow& command : capture::CommandTable()) text += Command(command);
  text += "}\n\nlocal REPLIES = {\n";
  for (const ReplyName& reply : kReplyNames) text += Reply(reply);
  text += "}\n\nlocal CONTROL_BYTES = {\n";
  for (const ValueName& name : names::kControlBytes) {
    text += "  [" + Hex(name.value) + "] = " + Quoted(name.name) + ",\n";
  }
  return text + "}\n";
}

}  // namespace pmddb832::tests
