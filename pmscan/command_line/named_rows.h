#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace pmscan {

// Whether the words are the same but for the case of their letters, a to z.
constexpr bool IsSameWord(std::string_view one, std::string_view other) {
  constexpr auto kLower = [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  };
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [=](char a, char b) { return kLower(a) == kLower(b); });
}

// The row of a table whose member `name` it is, in any case; null when there is none.
template <typename Rows>
constexpr auto FindByName(const Rows& rows, std::string_view name) -> decltype(rows.data()) {
  for (const auto& row : rows) {
    if (IsSameWord(row.name, name)) return &row;
  }
  return nullptr;
}

// The names of all rows: "grey, colour".
template <typename Rows>
std::string NamesOf(const Rows& rows) {
  std::string names;
  for (const auto& row : rows) names.append(names.empty() ? "" : ", ").append(row.name);
  return names;
}

}  // namespace pmscan
