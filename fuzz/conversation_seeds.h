#pragma once

#include <vector>

#include "fuzz/conversation.h"

namespace pmddb832::fuzz {

// Conversations from which a fuzz target of the family sets out: scans of every type from every
// kind of scanner, each action of the host amid several blocks and from within transfers, the
// progress routine and a repaint, and each kind of fault at each moment.
std::vector<Conversation> ConversationSeeds(Family family);

}  // namespace pmddb832::fuzz
