#pragma once

#include <vector>

#include "fuzz/conversation.h"

namespace pmddb832::fuzz {

// Adds conversations at the limits of the protocol, which no mutation of an ordinary one reaches
// soon: sizes and places beyond the limits, options that change under way, and calls and failures
// at each transfer of a scan.
void AddCornerSeeds(std::vector<Conversation>& seeds);

}  // namespace pmddb832::fuzz
