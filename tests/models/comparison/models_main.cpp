#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tests/models/comparison/comparison.h"

// models COUNT [FIRST_SEED [extended|standard]]: so many conversations of each family, or of one,
// each held against the model.

using namespace pmddb832::models;

namespace {

constexpr std::uint64_t kMostTold = 3;

bool Compare(const char* name, Family family, std::uint64_t count, std::uint64_t firstSeed) {
  Tally tally;
  std::uint64_t differences = 0;
  for (std::uint64_t seed = firstSeed; seed < firstSeed + count; ++seed) {
    const std::string difference = CompareConversation(family, seed, tally);
    if (difference.empty()) continue;
    if (++differences <= kMostTold) std::printf("%s\n", difference.c_str());
  }
  std::printf("%s: %s  %llu differences\n", name, tally.Report().c_str(),
              static_cast<unsigned long long>(differences));
  return differences == 0;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount < 2) {
    std::fprintf(stderr, "expected: models COUNT [FIRST_SEED [extended|standard]]\n");
    return 2;
  }
  const std::uint64_t count = std::strtoull(arguments[1], nullptr, 10);
  const std::uint64_t first = argumentCount > 2 ? std::strtoull(arguments[2], nullptr, 10) : 1;
  const char* const only = argumentCount > 3 ? arguments[3] : "";
  bool agree = true;
  if (std::strcmp(only, "standard") != 0) {
    agree = Compare("extended", Family::kExtended, count, first) && agree;
  }
  if (std::strcmp(only, "extended") != 0) {
    agree = Compare("standard", Family::kStandard, count, first) && agree;
  }
  return agree ? 0 : 1;
}
