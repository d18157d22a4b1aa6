// The row kernels as the cross compiler builds them, beside a copy of as many bytes, and in turn
// with those of another build, a row_library.dll:
//
//   windows_row_bench OTHER.dll
//
// Google Benchmark and the other libraries exist for the build machine only, so a stopwatch stands
// here.

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <iostream>

#include "bench/row_jobs.h"

namespace pmddb832::bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kRepetitions = 15;
constexpr std::chrono::milliseconds kRepetitionTime{10};
constexpr int kBatch = 100;  // runs between two looks at the clock

struct Timing {
  std::string name;
  std::function<void()> run;
  std::vector<double> nanoseconds;  // of one run, one for each repetition
};

std::vector<Timing> TimingsOf(const std::vector<Job>& jobs) {
  std::vector<Timing> timings;
  for (const Job& job : jobs) {
    for (const auto* list : {&job.contenders, &job.copies}) {
      for (const Contender& one : *list)
        timings.push_back({job.name + "/" + one.name, one.run, {}});
    }
  }
  return timings;
}

void Repeat(Timing& timing) {
  const Clock::time_point start = Clock::now();
  Clock::duration passed{};
  int runs = 0;
  while (passed < kRepetitionTime) {
    for (int i = 0; i < kBatch; ++i) timing.run();
    runs += kBatch;
    passed = Clock::now() - start;
  }
  timing.nanoseconds.push_back(std::chrono::duration<double, std::nano>(passed).count() / runs);
}

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

KernelsOfBuild Find(const char* file) {
  const HMODULE library = LoadLibraryA(file);
  const FARPROC found = library == nullptr ? nullptr : GetProcAddress(library, "RowKernelsOfBuild");
  return reinterpret_cast<KernelsOfBuild>(reinterpret_cast<void*>(found));
}

int Main(const char* other) {
  const KernelsOfBuild kernels = Find(other);
  if (kernels == nullptr) {
    std::cerr << other << " has no RowKernelsOfBuild.\n";
    return 1;
  }
  const std::vector<Job> jobs = RowJobs(kernels);
  if (!AllWriteTheSame(jobs)) return 1;
  std::vector<Timing> timings = TimingsOf(jobs);
  for (int i = 0; i < kRepetitions; ++i) std::for_each(timings.begin(), timings.end(), Repeat);
  Medians medians;
  for (const Timing& timing : timings) medians[timing.name] = Median(timing.nanoseconds);
  PrintRows(jobs, medians);
  std::cout << '\n';
  PrintBuilds(jobs, medians);
  return 0;
}

}  // namespace
}  // namespace pmddb832::bench

int main(int count, char** arguments) {
  if (count == 2) return pmddb832::bench::Main(arguments[1]);
  std::cerr << "One file expected: OTHER.dll\n";
  return 1;
}
