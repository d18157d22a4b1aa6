#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "capture/file/capture.h"

namespace capture {

// The conversation as text, lines of plain ASCII: the host's calls as headings, below each the
// exchanges with the scanner. What is alike is told once ("... 9 more like it"); a line on what
// went wrong begins with "!!".
std::string Decode(const Capture& capture);

// What bytes mean that are written in one go, as far as they tell it themselves: "FS W set
// parameters", "ACK", the fields of a 64-byte block; of other parameters only the bytes.
std::string DescribeWrite(std::span<const std::uint8_t> bytes);

// The same for a write behind the command (two bytes, as sent) that its parameters belong to:
// "ESC C colour mode: colour (0x13)". With an empty command it is DescribeWrite(bytes).
std::string DescribeWrite(std::span<const std::uint8_t> command,
                          std::span<const std::uint8_t> bytes);

// What a whole reply to the command means, an information reply with its header: "main status
// none, feeder installed (0x80), ...". Only the bytes where the command is not known.
std::string DescribeReply(std::span<const std::uint8_t> command,
                          std::span<const std::uint8_t> reply);

}  // namespace capture
