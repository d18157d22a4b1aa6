#pragma once

#include <string>
#include <string_view>

namespace pmscan {

// The row of a table whose member `name` it is; null when there is none.
template <typename Rows>
constexpr auto FindByName(const Rows& rows, std::string_view name) -> decltype(rows.data()) {
  for (const auto& row : rows) {
    if (row.name == name) return &row;
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
