#pragma once

#include <algorithm>
#include <cstdint>

namespace simulator {

// The row of a scanner's command table with that prefix and letter; null when there is none.
template <class Table>
constexpr auto FindCommandRow(const Table& table, std::uint8_t prefix, std::uint8_t letter) -> const
    typename Table::value_type* {
  const auto row = std::find_if(table.begin(), table.end(), [&](const auto& candidate) {
    return candidate.prefix == prefix && candidate.letter == static_cast<char>(letter);
  });
  return row == table.end() ? nullptr : &*row;
}

}  // namespace simulator
