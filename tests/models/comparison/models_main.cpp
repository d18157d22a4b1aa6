#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "tests/models/comparison/comparison.h"

// COUNT [FIRST_SEED [extended|standard]]: so many conversations of each family, or of one,
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
  const auto number = [&](int index, std::uint64_t otherwise) {
    return argumentCount > index ? std::strtoull(arguments[index], nullptr, 10) : otherwise;
  };
  const std::uint64_t count = number(1, 0), first = number(2, 1);
  const std::string_view only = argumentCount > 3 ? arguments[3] : "";
  if (count == 0 || (only != "" && only != "extended" && only != "standard")) {
    std::fprintf(stderr, "expected: COUNT [FIRST_SEED [extended|standard]], COUNT 1 or more\n");
    return 2;
  }
  bool agree = true;
  if (only != "standard") agree = Compare("extended", Family::kExtended, count, first);
  if (only != "extended") agree = Compare("standard", Family::kStandard, count, first) && agree;
  return agree ? 0 : 1;
}
