#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>

#include "tests/models/comparison/conversation.h"

namespace pmddb832::models {

// What happened in many conversations.
struct Tally {
  std::uint64_t conversations = 0, calls = 0, transfers = 0, faults = 0;
  std::array<std::uint64_t, kExportNames.size()> callsOf{};
  std::uint64_t opens = 0, pages = 0, bands = 0, ejects = 0, cancels = 0, focusRuns = 0;
  std::map<std::uint32_t, std::uint64_t> errors;  // calls that left each code

  std::string Report() const;
};

// Holds one conversation of the module with a scanner against the model, call by call. Empty when
// they agree, else the first difference: where it is, what was expected and what came, and how to
// see it again.
std::string CompareConversation(Family family, std::uint64_t seed, Tally& tally);

}  // namespace pmddb832::models
