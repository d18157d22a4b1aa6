#include "bench/ratio_table.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <iostream>

namespace pmddb832::bench {
namespace {

// Keeps the medians and reports failures.
class MedianReporter final : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& /*context*/) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.error_occurred) Fail(run);
      if (run.aggregate_name == "median") {
        medians[run.run_name.function_name] = run.GetAdjustedCPUTime();
      }
    }
  }

  Medians medians;
  bool failed = false;

 private:
  void Fail(const Run& run) {
    std::cerr << run.benchmark_name() << ": " << run.error_message << '\n';
    failed = true;
  }
};

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

Medians RunInterleaved(int argc, char** argv) {
  // The later one of two flags wins: the caller's.
  std::vector<std::string> flags{
      "--benchmark_repetitions=15",
      "--benchmark_enable_random_interleaving=true",
      "--benchmark_report_aggregates_only=true",
      "--benchmark_min_time=0.01",
  };
  std::vector<char*> arguments{argv[0]};
  for (std::string& flag : flags) arguments.push_back(flag.data());
  arguments.insert(arguments.end(), argv + 1, argv + argc);
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return {};
  MedianReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return reporter.failed ? Medians{} : reporter.medians;
}

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
