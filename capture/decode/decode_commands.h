#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "capture/decode/decode_fields.h"
#include "wire/command_table.h"

namespace capture {

// "ESC C", "FS W".
std::string Letters(const pmddb832::CommandShape& command);

// "ESC C colour mode".
std::string NameOf(const pmddb832::CommandShape& command);

// Name of a byte that is sent alone, as "ACK"; nothing for other bytes.
std::optional<std::string> ControlName(std::uint8_t byte);

// The fields of the command's parameter block.
std::vector<FieldRow> DescribeParameters(const pmddb832::CommandShape& command,
                                         std::span<const std::uint8_t> block);

}  // namespace capture
