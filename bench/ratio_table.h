#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace pmddb832::bench {

// Median processor time of one iteration in nanoseconds, by the benchmark's name; and of each
// figure that it counts by itself, by "name/figure".
using Medians = std::map<std::string, double>;

// Cells of a table: a number, and the ratio of two medians, "-" where one was not measured.
std::string Number(double value, int decimals);
std::string Ratio(const Medians& medians, const std::string& numerator,
                  const std::string& denominator);

// Prints a Markdown table; the first row is its header.
void PrintTable(const std::vector<std::vector<std::string>>& rows);

// A figure that is to be at least or at most so much.
struct Goal {
  std::string figure;
  double value;
  enum class Kind { kAtLeast, kAtMost } kind;
  double limit;
};

// Prints a line for each goal: held or missed, and by how much.
void PrintGoals(const std::vector<Goal>& goals);

// The ratio of two medians; empty where one was not measured.
std::optional<double> RatioOf(const Medians& medians, const std::string& numerator,
                              const std::string& denominator);

}  // namespace pmddb832::bench
