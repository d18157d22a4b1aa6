#include "simulator/catalog/nearest_name.h"

#include <algorithm>
#include <cctype>
#include <utility>

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

bool AreSwapped(std::string_view written, std::string_view meant) {
  return IsSameName(written.substr(0, 1), meant.substr(1, 1)) &&
         IsSameName(written.substr(1, 1), meant.substr(0, 1));
}

// What it costs to make `meant` of `written` by adding, dropping, changing and swapping letters.
std::size_t EditCost(std::string_view written, std::string_view meant) {
  std::vector<std::size_t> row;  // to make the first i letters of `meant` of those so far
  for (std::size_t i = 0; i <= meant.size(); ++i) row.push_back(i * kLetter);
  std::vector<std::size_t> above;
  for (std::size_t letter = 0; letter < written.size(); ++letter) {
    const std::vector<std::size_t> twoAbove = std::exchange(above, row);
    row[0] += kLetter;
    for (std::size_t i = 0; i < meant.size(); ++i) {
      const std::size_t changed = above[i] + CostOf(written[letter], meant[i]);
      row[i + 1] = std::min({changed, row[i] + kLetter, above[i + 1] + kLetter});
      if (letter == 0 || i == 0) continue;
      if (!AreSwapped(written.substr(letter - 1), meant.substr(i - 1))) continue;
      row[i + 1] = std::min(row[i + 1], twoAbove[i - 1] + kLetter);
    }
  }
  return row.back();
}

}  // namespace

std::string_view NearestName(std::string_view written, const std::vector<std::string_view>& names) {
  std::string_view nearest;
  // Half of the letters may be wrong; the dashes of an option are none.
  const auto letters = static_cast<std::size_t>(std::count_if(
      written.begin(), written.end(), [](unsigned char c) { return std::isalnum(c) != 0; }));
  std::size_t best = letters + 1;
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

bool BeginsWithName(std::string_view text, std::string_view name) {
  return IsSameName(text.substr(0, name.size()), name);
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
