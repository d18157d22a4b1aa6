// The row kernels beside a copy of as many bytes, and beside the libraries that do the same job.

#include <benchmark/benchmark.h>

#include <map>

#include "bench/median_run.h"
#include "bench/row_jobs.h"

namespace pmddb832::bench {
namespace {

// The other libraries, by the name of the job.
const std::multimap<std::string, Contender>& Peers() {
  static const std::multimap<std::string, Contender> peers{
      {"inversion", Row("OpenCV", opencv_rows::Invert)},
      {"preview map", Row("OpenCV", opencv_rows::PreviewGrey)},
      {"24-bit swap", Row("libyuv", libyuv_rows::SwapBytes)},
      {"24-bit swap", Row("OpenCV", opencv_rows::SwapBytes)},
      {"48-bit swap", Row("OpenCV", opencv_rows::SwapSamples)},
      {"48 to 24 bits, same order", Row("libyuv", libyuv_rows::Reduce)},
      {"48 to 24 bits, same order", Row("OpenCV", opencv_rows::Reduce)},
      {"48 to 24 bits, reversed", Row("libyuv", libyuv_rows::ReduceSwapped)},
      {"48 to 24 bits, reversed", Row("OpenCV", opencv_rows::ReduceSwapped)},
  };
  return peers;
}

std::vector<Job> JobsWithPeers() {
  std::vector<Job> jobs = RowJobs();
  for (Job& job : jobs) {
    const auto [first, last] = Peers().equal_range(job.name);
    for (auto peer = first; peer != last; ++peer) job.contenders.push_back(peer->second);
  }
  return jobs;
}

void Register(const std::string& job, const std::vector<Contender>& contenders) {
  for (const Contender& contender : contenders) {
    benchmark::RegisterBenchmark((job + "/" + contender.name).c_str(),
                                 [run = contender.run](benchmark::State& state) {
                                   for (auto _ : state) {
                                     run();
                                     benchmark::ClobberMemory();
                                   }
                                 });
  }
}

int Main(int argc, char** argv) {
  const std::vector<Job> jobs = JobsWithPeers();
  if (!AllWriteTheSame(jobs)) return 1;
  for (const Job& job : jobs) {
    Register(job.name, job.contenders);
    Register(job.name, job.copies);
  }
  const Medians medians = RunInterleaved(argc, argv);
  if (medians.empty()) return 1;
  PrintRows(jobs, medians);
  return 0;
}

}  // namespace
}  // namespace pmddb832::bench

int main(int argc, char** argv) {
  return pmddb832::bench::Main(argc, argv);
}
