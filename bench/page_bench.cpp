// Whole letter pages through the exports, from a scanner in memory into the host's buffer. Beside
// each page: a memcpy of as many bytes, and the two steps that the protocol demands of any driver.

#include <benchmark/benchmark.h>

#include <ctime>
#include <iostream>
#include <string>
#include <vector>

#include "bench/median_run.h"
#include "bench/memory_peak.h"
#include "bench/memory_scanner.h"
#include "bench/page.h"
#include "interface/exports.h"

namespace pmddb832::bench {
namespace {

// What is counted of a page.
constexpr const char* kNanoseconds = "ns";
constexpr const char* kByCopy = "time / memcpy";
constexpr const char* kTwoStepsByCopy = "two steps / memcpy";
constexpr const char* kByTwoSteps = "time / two steps";

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

// Processor time that passes of a job took, in nanoseconds.
class Stopwatch {
 public:
  template <class Pass>
  void Time(Pass pass) {
    const double start = Now();
    pass();
    passed_ += Now() - start;
  }
  double Passed() const { return passed_; }

 private:
  static double Now() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
  }

  double passed_ = 0;
};

// The module and the two steps take turns, pass by pass, so that what disturbs one disturbs the
// other, and each finds in the caches what the other left. A memcpy leaves something else there.
void TimePage(benchmark::State& state, const Page& page) {
  Host host(page);
  Stopwatch module;
  Stopwatch twoSteps;
  Stopwatch copy;
  bool scanned = true;
  for (auto _ : state) {
    module.Time([&] { scanned = scanned && host.ScanPage(); });
    twoSteps.Time([&] { CopyInTwoSteps(page); });
  }
  if (!scanned) return state.SkipWithError("the scan failed");
  for (auto pass = state.iterations(); pass > 0; --pass) copy.Time([&] { CopyOnce(page); });
  state.counters[kNanoseconds] = {module.Passed(), benchmark::Counter::kAvgIterations};
  state.counters[kByCopy] = module.Passed() / copy.Passed();
  state.counters[kTwoStepsByCopy] = twoSteps.Passed() / copy.Passed();
  state.counters[kByTwoSteps] = module.Passed() / twoSteps.Passed();
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

std::vector<std::string> TableRow(const Page& page, const Medians& medians) {
  const auto figure = [&](const char* name) { return medians.at(page.Name() + '/' + name); };
  const double microseconds = figure(kNanoseconds) / 1e3;
  const double megabytes = static_cast<double>(page.Bytes()) / 1e6;
  const Cost cost = CostOf(page);
  return {page.Name(),
          Number(microseconds, 0),
          Number(microseconds / megabytes, 0),
          Number(figure(kByCopy), 2),
          Number(figure(kTwoStepsByCopy), 2),
          Number(figure(kByTwoSteps), 2),
          std::to_string(cost.transfers),
          std::to_string(cost.kilobytes)};
}

// What the module adds to the two steps that the protocol demands. A line of line art at 300 dpi is
// copied in so short a time that every instruction counts.
Goal GoalOf(const Page& page, const Medians& medians) {
  const bool isShort = page.scan->rawBits == 1 && page.resolution == 300;
  return {page.Name() + ", " + kByTwoSteps, medians.at(page.Name() + '/' + kByTwoSteps),
          Goal::Kind::kAtMost, isShort ? 1.15 : 1.05};
}

int Main(int argc, char** argv) {
  MakePagesResident();
  const std::vector<Page> pages = Pages();
  for (const Page& page : pages) {
    benchmark::RegisterBenchmark(page.Name().c_str(),
                                 [&page](benchmark::State& state) { TimePage(state, page); });
  }
  const Medians medians = RunOneByOne(argc, argv);
  if (medians.empty()) return 1;
  std::vector<std::vector<std::string>> table{{"page", "us", "us per MB", kByCopy, kTwoStepsByCopy,
                                               kByTwoSteps, "transfers", "memory growth, KB"}};
  std::vector<Goal> goals;
  for (const Page& page : pages) {
    if (medians.count(page.Name()) == 0) continue;
    table.push_back(TableRow(page, medians));
    goals.push_back(GoalOf(page, medians));
  }
  PrintTable(table);
  std::cout << '\n';
  PrintGoals(goals);
  return 0;
}

}  // namespace
}  // namespace pmddb832::bench

int main(int argc, char** argv) {
  return pmddb832::bench::Main(argc, argv);
}
