#pragma once

#include <cstdint>

#include "transport/general_cmd.h"
#include "wire/wire_block.h"

namespace pmddb832 {

// Asks for the focus position that automatic focus found, and reads the answer into the buffer:
// kFocusUnknown when the scanner does not tell.
std::uint8_t ReadFocusPosition(GeneralCmd& scanner, Call& call, ReplyBuffer& buffer);

}  // namespace pmddb832
