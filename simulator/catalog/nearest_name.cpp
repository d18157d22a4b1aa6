#include "simulator/catalog/nearest_name.h"

#include <algorithm>
#include <cctype>

namespace simulator {
namespace {

// Costs of editing, in half letters.
constexpr std::size_t kLetter = 2;
constexpr std::size_t kCase = 1;

char Lower(char letter) {
  return static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
}

std::size_t CostOf(char written, char meant) {
  if (written == meant) return 0;
  return Lower(written) == Lower(meant) ? kCase : kLetter;
}

// What it costs to make `meant` of `written` by adding, dropping and changing letters.
std::size_t EditCost(std::string_view written, std::string_view meant) {
  std::vector<std::size_t> costs;
  for (std::size_t i = 0; i <= meant.size(); ++i) costs.push_back(i * kLetter);
  for (const char letter : written) {
    std::size_t diagonal = costs[0];
    costs[0] += kLetter;
    for (std::size_t i = 0; i < meant.size(); ++i) {
      const std::size_t changed = diagonal + CostOf(letter, meant[i]);
      diagonal = costs[i + 1];
      costs[i + 1] = std::min({changed, costs[i] + kLetter, costs[i + 1] + kLetter});
    }
  }
  return costs.back();
}

}  // namespace

std::string_view NearestName(std::string_view written, const std::vector<std::string_view>& names) {
  std::string_view nearest;
  // Half of the letters may be wrong.
  std::size_t best = written.size() + 1;
  for (const std::string_view name : names) {
    const std::size_t cost = EditCost(written, name);
    if (cost >= best) continue;
    best = cost;
    nearest = name;
  }
  return nearest;
}

bool IsSameName(std::string_view one, std::string_view other) {
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [](char a, char b) { return Lower(a) == Lower(b); });
}

std::string SuggestName(std::string_view written, const std::vector<std::string_view>& names) {
  constexpr std::size_t kMostListed = 12;
  const std::string_view nearest = NearestName(written, names);
  if (names.size() > kMostListed) {
    return nearest.empty() ? "" : "; did you mean \"" + std::string(nearest) + "\"?";
  }
  std::string all;
  for (const std::string_view name : names) all.append(all.empty() ? "" : ", ").append(name);
  const std::string meant =
      nearest.empty() ? "" : "did you mean \"" + std::string(nearest) + "\"? There are: ";
  return "; " + (nearest.empty() ? "there are: " : meant) + all;
}

}  // namespace simulator
