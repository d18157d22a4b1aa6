#pragma once

#include <cstdint>

#include "transport/general_cmd.h"

namespace pmddb832 {

// Asks for the focus position that automatic focus found: kFocusUnknown when the scanner does not
// tell.
std::uint8_t ReadFocusPosition(GeneralCmd& scanner, Call& call);

}  // namespace pmddb832
