#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "wire/commands.h"
#include "wire/parameter_block.h"
#include "wire/parameter_fields.h"
#include "wire/protocol_bytes.h"

// Every command of both families with its shape: what belongs to it, and what it is answered with.
namespace pmddb832 {

// What the scanner answers to a command. ReplyShapeOf has the shape of each.
enum class ReplyKind : std::uint8_t {
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

struct CommandShape {
  std::uint8_t prefix;
  std::uint8_t letter;
  std::string_view name;
  ReplyKind reply;
  std::size_t parameterBytes = 0;  // sent once the letters are acknowledged
  std::span<const NamedField> parameters = {};
};

inline constexpr std::size_t kColorMatrixBytes = 9;
inline constexpr std::size_t kGammaTableBytes = 257;  // a prefix and 256 values

namespace commands {

// The commands that are acknowledged: of ESC with the fields of their parameters, whose bytes the
// fields fill.
consteval CommandShape Sets(std::uint8_t letter, std::string_view name,
                            std::span<const NamedField> parameters) {
  const NamedField& last = parameters.back();
  return {kEsc, letter, name, ReplyKind::kAcknowledge, last.offset + last.width, parameters};
}

consteval CommandShape Asks(std::uint8_t prefix, std::uint8_t letter, std::string_view name,
                            ReplyKind reply) {
  return {prefix, letter, name, reply};
}

}  // namespace commands

// clang-format off
inline constexpr std::array kCommandTable{
    commands::Asks(kEsc, esc::kProductName, "product name", ReplyKind::kProduct),
    commands::Asks(kEsc, esc::kReset, "reset", ReplyKind::kAcknowledge),
    commands::Sets(esc::kArea, "scan area", standard_parameter::kArea),
    commands::Sets(esc::kHalftone, "halftone", standard_parameter::kHalftone),
    commands::Sets(esc::kColorMode, "colour mode", standard_parameter::kColorMode),
    commands::Sets(esc::kBitsPerSample, "data format", standard_parameter::kBitsPerSample),
    commands::Asks(kEsc, esc::kCondition, "condition", ReplyKind::kHeaderOnly),
    commands::Asks(kEsc, esc::kStart, "start scan", ReplyKind::kBlockHeader),
    commands::Sets(esc::kZoom, "zoom", standard_parameter::kZoom),
    commands::Asks(kEsc, esc::kIdentity, "level and identity", ReplyKind::kLevel),
    commands::Sets(esc::kMirror, "mirror", standard_parameter::kMirror),
    commands::Sets(esc::kBrightness, "brightness", standard_parameter::kBrightness),
    commands::Sets(esc::kColorCorrection, "colour correction",
                   standard_parameter::kColorCorrection),
    commands::Sets(esc::kSharpness, "sharpness", standard_parameter::kSharpness),
    commands::Sets(esc::kResolution, "resolution", standard_parameter::kResolution),
    commands::Sets(esc::kGammaCode, "gamma code", standard_parameter::kGamma),
    commands::Sets(esc::kLinesPerBlock, "lines per block", standard_parameter::kLinesPerBlock),
    commands::Sets(esc::kOptionUnit, "option unit", standard_parameter::kOptionUnit),
    commands::Asks(kEsc, esc::kStatus, "status", ReplyKind::kStatusReply),
    commands::Sets(esc::kParamG, "parameter g", standard_parameter::kParamG),
    CommandShape{kEsc, esc::kColorMatrix, "colour matrix", ReplyKind::kAcknowledge,
                 kColorMatrixBytes},
    commands::Sets(esc::kFocusPosition, "focus position", standard_parameter::kFocus),
    commands::Asks(kEsc, esc::kFocusFound, "focus found", ReplyKind::kFocus),
    commands::Sets(esc::kEnhancement, "enhancement", standard_parameter::kEnhancement),
    commands::Sets(esc::kThreshold, "threshold", standard_parameter::kThreshold),
    CommandShape{kEsc, esc::kGammaTable, "gamma table", ReplyKind::kAcknowledge, kGammaTableBytes,
                 standard_parameter::kTablePrefix},
    commands::Asks(kFs, fs::kStatus, "status", ReplyKind::kStatusBlock),
    commands::Asks(kFs, fs::kStart, "start transfer", ReplyKind::kTransferHeader),
    commands::Asks(kFs, fs::kIdentity, "identity", ReplyKind::kIdentityBlock),
    CommandShape{kFs, fs::kParameters, "set parameters", ReplyKind::kAcknowledge,
                 sizeof(ParameterBlock), parameter::kFields},
};
// clang-format on

// The command that the two bytes are; null for others.
constexpr const CommandShape* FindCommand(std::span<const std::uint8_t> bytes) {
  if (bytes.size() != 2) return nullptr;
  const auto* const row =
      std::find_if(kCommandTable.begin(), kCommandTable.end(), [&](const CommandShape& command) {
        return command.prefix == bytes[0] && command.letter == bytes[1];
      });
  return row == kCommandTable.end() ? nullptr : row;
}

}  // namespace pmddb832
