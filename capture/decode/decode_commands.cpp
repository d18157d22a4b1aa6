#include "capture/decode/decode_commands.h"

#include <algorithm>
#include <array>

#include "wire/parameter_block.h"
#include "wire/parameter_fields.h"
#include "wire/protocol_bytes.h"
#include "wire/value_names.h"

namespace capture {
namespace {

using pmddb832::kEsc;
using pmddb832::kFs;
namespace sp = pmddb832::standard_parameter;

constexpr std::size_t kMatrixBytes = 9;
constexpr std::size_t kTableBytes = 257;  // a prefix and 256 values

// clang-format off
constexpr std::array kCommands{
    CommandRow{kEsc, '?', "product name",      ReplyKind::kProduct},
    CommandRow{kEsc, '@', "reset",             ReplyKind::kAcknowledge},
    CommandRow{kEsc, 'A', "scan area",         ReplyKind::kAcknowledge, 8, sp::kArea},
    CommandRow{kEsc, 'B', "halftone",          ReplyKind::kAcknowledge, 1, sp::kHalftone},
    CommandRow{kEsc, 'C', "colour mode",       ReplyKind::kAcknowledge, 1, sp::kColorMode},
    CommandRow{kEsc, 'D', "data format",       ReplyKind::kAcknowledge, 1, sp::kBitsPerSample},
    CommandRow{kEsc, 'F', "condition",         ReplyKind::kHeaderOnly},
    CommandRow{kEsc, 'G', "start scan",        ReplyKind::kBlockHeader},
    CommandRow{kEsc, 'H', "zoom",              ReplyKind::kAcknowledge, 2, sp::kZoom},
    CommandRow{kEsc, 'I', "level and identity", ReplyKind::kLevel},
    CommandRow{kEsc, 'K', "mirror",            ReplyKind::kAcknowledge, 1, sp::kMirror},
    CommandRow{kEsc, 'L', "brightness",        ReplyKind::kAcknowledge, 1, sp::kBrightness},
    CommandRow{kEsc, 'M', "colour correction", ReplyKind::kAcknowledge, 1, sp::kColorCorrection},
    CommandRow{kEsc, 'Q', "sharpness",         ReplyKind::kAcknowledge, 1, sp::kSharpness},
    CommandRow{kEsc, 'R', "resolution",        ReplyKind::kAcknowledge, 4, sp::kResolution},
    CommandRow{kEsc, 'Z', "gamma code",        ReplyKind::kAcknowledge, 1, sp::kGamma},
    CommandRow{kEsc, 'd', "lines per block",   ReplyKind::kAcknowledge, 1, sp::kLinesPerBlock},
    CommandRow{kEsc, 'e', "option unit",       ReplyKind::kAcknowledge, 1, sp::kOptionUnit},
    CommandRow{kEsc, 'f', "status",            ReplyKind::kStatusReply},
    CommandRow{kEsc, 'g', "parameter g",       ReplyKind::kAcknowledge, 1, sp::kParamG},
    CommandRow{kEsc, 'm', "colour matrix",     ReplyKind::kAcknowledge, kMatrixBytes},
    CommandRow{kEsc, 'p', "focus position",    ReplyKind::kAcknowledge, 1, sp::kFocus},
    CommandRow{kEsc, 'q', "focus found",       ReplyKind::kFocus},
    CommandRow{kEsc, 's', "enhancement",       ReplyKind::kAcknowledge, 1, sp::kEnhancement},
    CommandRow{kEsc, 't', "threshold",         ReplyKind::kAcknowledge, 1, sp::kThreshold},
    CommandRow{kEsc, 'z', "gamma table",       ReplyKind::kAcknowledge, kTableBytes,
               sp::kTablePrefix},
    CommandRow{kFs,  'F', "status",            ReplyKind::kStatusBlock},
    CommandRow{kFs,  'G', "start transfer",    ReplyKind::kTransferHeader},
    CommandRow{kFs,  'I', "identity",          ReplyKind::kIdentityBlock},
    CommandRow{kFs,  'W', "set parameters",    ReplyKind::kAcknowledge,
               sizeof(pmddb832::ParameterBlock), pmddb832::parameter::kFields},
};
// clang-format on

std::string TableText(std::span<const std::uint8_t> table) {
  if (table.empty()) return "0 values";
  std::size_t i = 0;
  while (i < table.size() && table[i] == i) ++i;
  const std::string count = Counted(table.size(), "value");
  if (i == table.size()) return count + ", straight";
  return count + " from " + std::to_string(table.front()) + " over " +
         std::to_string(table[table.size() / 2]) + " to " + std::to_string(table.back());
}

std::string MatrixText(std::span<const std::uint8_t> matrix) {
  std::string text;
  for (const std::uint8_t factor : matrix) {
    text.append(text.empty() ? "" : " ");
    text.append(std::to_string(static_cast<std::int8_t>(factor)));
  }
  return text;
}

}  // namespace

std::span<const CommandRow> CommandTable() {
  return kCommands;
}

const CommandRow* FindCommand(std::span<const std::uint8_t> bytes) {
  if (bytes.size() != 2) return nullptr;
  const auto row = std::find_if(kCommands.begin(), kCommands.end(), [&](const CommandRow& command) {
    return command.prefix == bytes[0] && command.letter == static_cast<char>(bytes[1]);
  });
  return row == kCommands.end() ? nullptr : &*row;
}

std::string Letters(const CommandRow& command) {
  return (command.prefix == kEsc ? "ESC " : "FS ") + std::string(1, command.letter);
}

std::optional<std::string> ControlName(std::uint8_t byte) {
  for (const pmddb832::ValueName& row : pmddb832::names::kControlBytes) {
    if (row.value == byte) return std::string(row.name);
  }
  return std::nullopt;
}

std::vector<FieldRow> DescribeParameters(const CommandRow& command,
                                         std::span<const std::uint8_t> block) {
  std::vector<FieldRow> rows = DescribeFields(command.parameters, block);
  if (command.parameterBytes == kTableBytes && !block.empty()) {
    rows.push_back({"table", TableText(block.subspan(1))});
  } else if (command.parameterBytes == kMatrixBytes) {
    rows.push_back({"matrix", MatrixText(block)});
  } else if (const std::string other = DescribeOtherBytes(command.parameters, block);
             !other.empty()) {
    rows.push_back({"bytes that must be 0", other, true});
  }
  return rows;
}

}  // namespace capture
