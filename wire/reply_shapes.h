#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "wire/block_header.h"
#include "wire/command_table.h"
#include "wire/focus_reply.h"
#include "wire/identity_block.h"
#include "wire/product_reply.h"
#include "wire/status_block.h"
#include "wire/status_reply.h"
#include "wire/transfer_header.h"

namespace pmddb832 {

// Header of the reply to ESC "I".
namespace level_reply {

inline constexpr std::uint8_t kKnowsExtendedCommands = 0x02;

inline constexpr std::array kStatusNames{
    ValueName{kKnowsExtendedCommands, "knows the extended commands"},
};
inline constexpr std::array kFields{NamedFlags("header status", kReplyStatus, kStatusNames)};

}  // namespace level_reply

struct ReplyShape {
  ReplyKind kind;
  std::string_view name;
  std::size_t firstRead;  // its size; where that varies, the size of its header
  bool declaresData;      // an information reply: the header tells how many bytes are behind it
  bool startsWithStx;
  std::span<const NamedField> fields;  // at fixed places, the header of an information reply first
};

// clang-format off
inline constexpr std::array kReplyShapes{
    ReplyShape{ReplyKind::kAcknowledge, "acknowledge", 1, false, false, {}},
    ReplyShape{ReplyKind::kLevel, "level", sizeof(ReplyHeader), true, true, level_reply::kFields},
    ReplyShape{ReplyKind::kProduct, "product", sizeof(ReplyHeader), true, true,
               product_reply::kFields},
    ReplyShape{ReplyKind::kStatusReply, "status_reply", sizeof(ReplyHeader), true, true,
               status_reply::kFields},
    ReplyShape{ReplyKind::kFocus, "focus", sizeof(ReplyHeader), true, true, focus_reply::kFields},
    ReplyShape{ReplyKind::kHeaderOnly, "condition", sizeof(ReplyHeader), false, true, {}},
    ReplyShape{ReplyKind::kIdentityBlock, "identity", sizeof(IdentityBlock), false, false,
               identity::kFields},
    ReplyShape{ReplyKind::kStatusBlock, "status", sizeof(StatusBlock), false, false,
               status::kFields},
    ReplyShape{ReplyKind::kTransferHeader, "transfer_header", sizeof(TransferHeader), false, true,
               transfer::kFields},
    ReplyShape{ReplyKind::kBlockHeader, "block_header", sizeof(BlockHeader), false, true,
               block::kFields},
};
// clang-format on

constexpr const ReplyShape& ReplyShapeOf(ReplyKind kind) {
  return *std::find_if(kReplyShapes.begin(), kReplyShapes.end(),
                       [kind](const ReplyShape& shape) { return shape.kind == kind; });
}

// Bytes behind the header that an information reply declares; 0 for a reply without data.
constexpr std::size_t DeclaredDataBytes(ReplyKind kind, std::span<const std::uint8_t> header) {
  if (!ReplyShapeOf(kind).declaresData || header.size() < sizeof(ReplyHeader)) return 0;
  if (header[0] != kStx) return 0;
  return GetLittleEndian<std::uint16_t>(header.subspan<2, 2>());
}

}  // namespace pmddb832
