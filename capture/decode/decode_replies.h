#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "capture/decode/decode_commands.h"
#include "capture/decode/decode_fields.h"

namespace capture {

// A one-byte answer: "ACK", "NAK", "0x37, neither ACK nor NAK".
FieldRow DescribeAcknowledge(std::uint8_t byte);

// The fields of a whole reply to a command, the header of an information reply included. Where it
// is not what the command asks for, a row says so.
std::vector<FieldRow> DescribeReply(ReplyKind kind, std::span<const std::uint8_t> reply);

// The fields of a reply at fixed places, the header of an information reply included.
std::span<const pmddb832::NamedField> ReplyFields(ReplyKind kind);

// Bytes of a reply that has always the same size, and of the header where its size varies.
std::size_t FirstReadBytes(ReplyKind kind);

// Bytes behind the header that an information reply declares; 0 for a reply without data.
std::size_t DeclaredDataBytes(ReplyKind kind, std::span<const std::uint8_t> header);

}  // namespace capture
