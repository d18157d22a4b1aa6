#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "capture/conversation/picture_blocks.h"
#include "capture/decode/decode_fields.h"
#include "wire/command_table.h"

namespace capture {

// A one-byte answer: "ACK", "NAK", "0x37, neither ACK nor NAK".
FieldRow DescribeAcknowledge(std::uint8_t byte);

// The fields of a whole reply that is more than an acknowledge, the header of an information reply
// included. Where it
// is not what the command asks for, a row says so.
std::vector<FieldRow> DescribeReply(pmddb832::ReplyKind kind, std::span<const std::uint8_t> reply);

// "block 3 of 12".
std::string DescribePlace(const PictureBlock& block);

// What came with a block: "16 lines", "65280 bytes", "status ok".
std::vector<FieldRow> DescribeBlock(const PictureBlock& block);

// What is wrong with a block's header behind which no block follows.
std::string DescribeBadHeader(std::span<const std::uint8_t> header);

}  // namespace capture
