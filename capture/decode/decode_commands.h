#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "capture/decode/decode_fields.h"
#include "wire/named_field.h"

namespace capture {

// What the scanner answers to a command.
enum class ReplyKind {
  kAcknowledge,     // one byte; one more behind the parameter block
  kLevel,           // information reply: level, resolutions, area
  kProduct,         // information reply: product name
  kStatusReply,     // information reply: status and option units
  kFocus,           // information reply: focus position
  kHeaderOnly,      // the header of an information reply
  kIdentityBlock,   // 80 bytes
  kStatusBlock,     // 16 bytes
  kTransferHeader,  // 14 bytes, then the blocks
  kBlockHeader,     // 6 bytes, then the blocks
};

// A command of either family.
struct CommandRow {
  std::uint8_t prefix;
  char letter;
  std::string_view name;
  ReplyKind reply;
  std::size_t parameterBytes = 0;
  std::span<const pmddb832::NamedField> parameters = {};
};

std::span<const CommandRow> CommandTable();

// The command that the two bytes are; null for others.
const CommandRow* FindCommand(std::span<const std::uint8_t> bytes);

// "ESC C", "FS W".
std::string Letters(const CommandRow& command);

// Name of a byte that is sent alone, as "ACK"; nothing for other bytes.
std::optional<std::string> ControlName(std::uint8_t byte);

// The fields of the command's parameter block.
std::vector<FieldRow> DescribeParameters(const CommandRow& command,
                                         std::span<const std::uint8_t> block);

}  // namespace capture
