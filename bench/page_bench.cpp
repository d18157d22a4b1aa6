// Whole letter pages through the exports, from a scanner in memory into the host's buffer. Beside
// each page: a memcpy of as many bytes, and the two steps that the protocol demands of any driver.

#include <benchmark/benchmark.h>

#include <iostream>
#include <string>
#include <vector>

#include "bench/interleaved_run.h"
#include "bench/memory_peak.h"
#include "bench/memory_scanner.h"
#include "bench/page.h"
#include "interface/exports.h"

namespace pmddb832::bench {
namespace {

// A host that has opened a scanner, of which there is one at a time.
class Host {
 public:
  explicit Host(const Page& page)
      : page_(page),
        scanner_(page.scan->family, page.scan->rawBits, ScannerMemory()),
        settings_(page.Settings(scanner_)),
        open_(PMOpenScanner(&settings_) == 1) {}
  ~Host() { PMCloseScanner(); }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  // False when the scan fails.
  bool ScanPage() {
    AcquisitionSetup setup{};
    AcquisitionBand band{kAcquisitionGoOn, 0, 0, 0, 0};
    if (!open_) return false;
    PMInitAcquire(page_.scan->outputFormat, nullptr, &setup);
    if (setup.status != kAcquisitionGoOn) return false;
    const std::uint32_t wholePage = setup.lineBytes * setup.heightLines;
    const auto bytes =
        page_.bufferBytes == 0 ? wholePage : static_cast<std::uint32_t>(page_.bufferBytes);
    while (band.status == kAcquisitionGoOn && band.done == 0) {
      PMAcquireImage(HostMemory().data(), bytes, &band);
      benchmark::ClobberMemory();
    }
    return band.status == kAcquisitionGoOn;
  }

  // Reads and writes of the device since it was made.
  std::uint32_t Transfers() const { return scanner_.Transfers(); }

 private:
  const Page& page_;
  MemoryScanner scanner_;
  ScannerSettings settings_;
  bool open_;
};

// Every type at both resolutions into one buffer, and the page that a copy likes best in bands.
std::vector<Page> Pages() {
  std::vector<Page> pages;
  for (const Scan& scan : kScans) {
    for (const std::uint32_t resolution : {300u, 1200u}) pages.push_back({&scan, resolution});
  }
  constexpr std::size_t kTrueColour = 1;
  for (const std::size_t kilobytes : {64u, 1024u, 16384u}) {
    pages.push_back({&kScans[kTrueColour], 1200, kilobytes << 10});
  }
  return pages;
}

void Register(const Page& page) {
  const std::string name = page.Name();
  benchmark::RegisterBenchmark((name + "/module").c_str(), [&page](benchmark::State& state) {
    Host host(page);
    for (auto _ : state) {
      if (!host.ScanPage()) return state.SkipWithError("the scan failed");
    }
  });
  benchmark::RegisterBenchmark((name + "/memcpy").c_str(), [&page](benchmark::State& state) {
    for (auto _ : state) CopyOnce(page);
  });
  benchmark::RegisterBenchmark((name + "/two steps").c_str(), [&page](benchmark::State& state) {
    for (auto _ : state) CopyInTwoSteps(page);
  });
}

// What a further page takes beside time.
struct Cost {
  std::uint32_t transfers;
  std::size_t kilobytes;  // of memory, at its peak
};

Cost CostOf(const Page& page) {
  Host host(page);
  host.ScanPage();
  const std::uint32_t transfersBefore = host.Transfers();
  const MemoryWatch watch;
  host.ScanPage();
  return {host.Transfers() - transfersBefore, watch.GrownKilobytes()};
}

std::vector<std::string> TableRow(const Page& page, double nanoseconds, const Medians& medians) {
  const std::string name = page.Name();
  const double megabytes = static_cast<double>(page.Bytes()) / 1e6;
  const Cost cost = CostOf(page);
  return {name,
          Number(nanoseconds / 1e3, 0),
          Number(nanoseconds / 1e3 / megabytes, 0),
          Ratio(medians, name + "/module", name + "/memcpy"),
          Ratio(medians, name + "/two steps", name + "/memcpy"),
          Ratio(medians, name + "/module", name + "/two steps"),
          std::to_string(cost.transfers),
          std::to_string(cost.kilobytes)};
}

// What the module adds to the two steps that the protocol demands. A line of line art at 300 dpi is
// copied in so short a time that every instruction counts.
void PrintPageGoals(const std::vector<Page>& pages, const Medians& medians) {
  std::vector<Goal> goals;
  for (const Page& page : pages) {
    const std::string name = page.Name();
    const auto time = RatioOf(medians, name + "/module", name + "/two steps");
    const bool isShort = page.scan->rawBits == 1 && page.resolution == 300;
    if (!time.has_value()) continue;
    goals.push_back(
        {name + ", time / two steps", *time, Goal::Kind::kAtMost, isShort ? 1.15 : 1.05});
  }
  PrintGoals(goals);
}

int Main(int argc, char** argv) {
  MakePagesResident();
  const std::vector<Page> pages = Pages();
  for (const Page& page : pages) Register(page);
  const Medians medians = RunInterleaved(argc, argv);
  if (medians.empty()) return 1;
  std::vector<std::vector<std::string>> table{{"page", "us", "us per MB", "time / memcpy",
                                               "two steps / memcpy", "time / two steps",
                                               "transfers", "memory growth, KB"}};
  for (const Page& page : pages) {
    const auto found = medians.find(page.Name() + "/module");
    if (found != medians.end()) table.push_back(TableRow(page, found->second, medians));
  }
  PrintTable(table);
  std::cout << '\n';
  PrintPageGoals(pages, medians);
  return 0;
}

}  // namespace
}  // namespace pmddb832::bench

int main(int argc, char** argv) {
  return pmddb832::bench::Main(argc, argv);
}
