#include <doctest/doctest.h>

#include "tests/models/comparison/comparison.h"

using namespace pmddb832::models;

namespace {

constexpr std::uint64_t kConversations = 2000;

// Every conversation must agree, and they must reach what they are there for.
void CheckConversations(Family family) {
  Tally tally;
  for (std::uint64_t seed = 1; seed <= kConversations; ++seed) {
    const std::string difference = CompareConversation(family, seed, tally);
    INFO(difference);
    REQUIRE(difference.empty());
  }
  CHECK(tally.pages > 2 * kConversations);
  CHECK(tally.ejects > 0);
  CHECK(tally.cancels > 0);
  CHECK(tally.focusRuns > 0);
}

}  // namespace

TEST_CASE("models: conversations with scanners of extended commands go as the rules say") {
  CheckConversations(Family::kExtended);
}

TEST_CASE("models: conversations with scanners of standard commands go as the rules say") {
  CheckConversations(Family::kStandard);
}
