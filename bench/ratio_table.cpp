#include "bench/ratio_table.h"

#include <algorithm>
#include <array>
#include <cmath>
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
  const std::optional<double> ratio = RatioOf(medians, numerator, denominator);
  return ratio.has_value() ? Number(*ratio, 2) : "-";
}

std::optional<double> RatioOf(const Medians& medians, const std::string& numerator,
                              const std::string& denominator) {
  const auto above = medians.find(numerator);
  const auto below = medians.find(denominator);
  if (above == medians.end() || below == medians.end()) return std::nullopt;
  return above->second / below->second;
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

void PrintGoals(const std::vector<Goal>& goals) {
  for (const Goal& goal : goals) {
    const bool atLeast = goal.kind == Goal::Kind::kAtLeast;
    const double reserve = atLeast ? goal.value - goal.limit : goal.limit - goal.value;
    std::cout << (reserve >= 0 ? "held" : "MISSED") << " by " << Number(std::abs(reserve), 2)
              << ": " << goal.figure << " is " << Number(goal.value, 2) << ", to be at "
              << (atLeast ? "least " : "most ") << Number(goal.limit, 2) << '\n';
  }
}

}  // namespace pmddb832::bench
