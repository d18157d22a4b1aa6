#include "bench/median_run.h"

#include <benchmark/benchmark.h>

#include <iostream>
#include <vector>

namespace pmddb832::bench {
namespace {

// Keeps the medians and reports failures.
class MedianReporter final : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& /*context*/) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.error_occurred) Fail(run);
      if (run.aggregate_name == "median") Keep(run);
    }
  }

  Medians medians;
  bool failed = false;

 private:
  void Keep(const Run& run) {
    const std::string& name = run.run_name.function_name;
    medians[name] = run.GetAdjustedCPUTime();
    for (const auto& [figure, counter] : run.counters) {
      medians[(name + '/').append(figure)] = counter.value;
    }
  }

  void Fail(const Run& run) {
    std::cerr << run.benchmark_name() << ": " << run.error_message << '\n';
    failed = true;
  }
};

Medians Run(std::vector<std::string> flags, int argc, char** argv) {
  flags.emplace_back("--benchmark_repetitions=15");
  flags.emplace_back("--benchmark_report_aggregates_only=true");
  std::vector<char*> arguments{argv[0]};
  for (std::string& flag : flags) arguments.push_back(flag.data());
  // The later one of two flags wins: the caller's.
  arguments.insert(arguments.end(), argv + 1, argv + argc);
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return {};
  MedianReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return reporter.failed ? Medians{} : reporter.medians;
}

}  // namespace

Medians RunInterleaved(int argc, char** argv) {
  return Run({"--benchmark_enable_random_interleaving=true", "--benchmark_min_time=0.01"}, argc,
             argv);
}

Medians RunOneByOne(int argc, char** argv) {
  return Run({"--benchmark_min_time=0.1"}, argc, argv);
}

}  // namespace pmddb832::bench
