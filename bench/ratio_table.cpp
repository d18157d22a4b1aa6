#include "bench/ratio_table.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iostream>

namespace pmddb832::bench {
namespace {

// The first column to the left, numbers to the right.
void PrintRow(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths) {
  std::cout << '|';
  for (std::size_t i = 0; i < widths.size(); ++i) {
    const std::string padding(widths[i] - cells[i].size(), ' ');
    std::cout << ' ' << (i == 0 ? cells[i] + padding : padding + cells[i]) << " |";
  }
  std::cout << '\n';
}

void PrintRule(const std::vector<std::size_t>& widths) {
  std::cout << '|';
  for (std::size_t i = 0; i < widths.size(); ++i) {
    std::cout << std::string(widths[i] + 1, '-') << (i == 0 ? "-|" : ":|");
  }
  std::cout << '\n';
}

}  // namespace

std::string Number(double value, int decimals) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
  return text.data();
}

std::string Ratio(const Medians& medians, const std::string& numerator,
                  const std::string& denominator) {
  const auto above = medians.find(numerator);
  const auto below = medians.find(denominator);
  if (above == medians.end() || below == medians.end()) return "-";
  return Number(above->second / below->second, 2);
}

void PrintTable(const std::vector<std::vector<std::string>>& rows) {
  std::vector<std::size_t> widths(rows.front().size());
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < widths.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  PrintRow(rows.front(), widths);
  PrintRule(widths);
  for (std::size_t i = 1; i < rows.size(); ++i) PrintRow(rows[i], widths);
}

}  // namespace pmddb832::bench
