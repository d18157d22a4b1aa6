#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "capture/decode/decode_fields.h"

namespace capture {

// A command with all that belongs to it, or one block of the picture with its answer.
struct Exchange {
  std::string title;               // "ESC C colour mode", "block 3 of 12"
  std::vector<std::string> parts;  // what was said, in its order: "ACK", "colour (0x13)", "ACK"
  std::vector<FieldRow> rows;      // a block of many fields
  bool hasTrouble = false;
  // Of the capture's file: where the trouble is, or else where it begins; 0 when not known.
  std::uint32_t line = 0;
  std::uint32_t block = 0;      // number of the block, from 1; 0 for a command
  std::uint32_t transfers = 0;  // that it is made of

  // Equal for two exchanges that tell the same but for the number of a block.
  bool IsLike(const Exchange& other) const {
    const bool hasSameTitle = block != 0 || title == other.title;
    return hasSameTitle && (block != 0) == (other.block != 0) && parts == other.parts &&
           rows == other.rows;
  }
};

}  // namespace capture
