// Whole letter pages through the exports of two builds of the DLL, in turn, from a scanner in
// memory into a buffer for the whole page:
//
//   windows_page_bench ONE.dll OTHER.dll

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <iostream>
#include <stdexcept>

#include "bench/memory_scanner.h"
#include "bench/ratio_table.h"
#include "interface/exports.h"

namespace pmddb832::bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kRepetitions = 41;
constexpr std::uint32_t kResolution = 300;
constexpr std::uint32_t kWidth = kResolution * 17 / 2;
constexpr std::uint32_t kHeight = kResolution * 11;

struct Page {
  Family family;
  const char* name;
  std::uint32_t pixelType;  // and output format
  std::uint32_t rawBits;    // of a pixel
  std::uint32_t preview = 0;
};

constexpr Page kPages[]{
    {Family::kExtended, "extended, grey", 2, 8},
    {Family::kExtended, "extended, true colour", 5, 24},
    {Family::kExtended, "extended, line art", 0, 1},
    {Family::kExtended, "extended, grey, preview", 2, 8, 1},
    {Family::kExtended, "extended, 12-bit colour", 6, 12},
    {Family::kExtended, "extended, deep colour, swapped", 7, 48},
    {Family::kStandard, "standard, grey", 2, 8},
    {Family::kStandard, "standard, true colour, swapped", 5, 24},
    {Family::kStandard, "standard, palette", 4, 12},
    {Family::kStandard, "standard, deep colour, swapped", 7, 48},
};

template <class Function>
Function Find(HMODULE library, const char* name, Function) {
  const FARPROC found = GetProcAddress(library, name);
  if (found == nullptr) throw std::runtime_error(std::string("There is no export ") + name);
  return reinterpret_cast<Function>(reinterpret_cast<void*>(found));
}

// The exports of one build that a scan needs.
struct Build {
  explicit Build(const char* file)
      : library(LoadLibraryA(file)),
        open(Find(library, "PMOpenScanner", &PMOpenScanner)),
        setUp(Find(library, "PMInitAcquire", &PMInitAcquire)),
        acquire(Find(library, "PMAcquireImage", &PMAcquireImage)),
        close(Find(library, "PMCloseScanner", &PMCloseScanner)) {}

  HMODULE library;
  decltype(&PMOpenScanner) open;
  decltype(&PMInitAcquire) setUp;
  decltype(&PMAcquireImage) acquire;
  decltype(&PMCloseScanner) close;
};

ScannerSettings SettingsOf(const Page& page, MemoryScanner& scanner) {
  ScannerSettings settings{};
  settings.deviceInterface = &scanner;
  settings.useDeviceInterface = 1;
  settings.pixelType = page.pixelType;
  settings.resolution = kResolution;
  settings.zoom = 100;
  settings.gamma = 100;
  settings.thresholdT = kThresholdUnset;
  settings.areaWidthPx = kWidth;
  settings.areaHeightPx = kHeight;
  settings.previewMode = page.preview;
  return settings;
}

void Demand(bool condition) {
  if (!condition) throw std::runtime_error("The scan failed");
}

// Microseconds from the set-up to the last row.
double TimePage(const Build& build, const Page& page) {
  static const std::vector<std::uint8_t> onBed(std::size_t{kWidth + 8} * (kHeight + 1) * 6, 0x55);
  static std::vector<std::uint8_t> buffer(onBed.size());
  MemoryScanner scanner(page.family, page.rawBits, onBed);
  ScannerSettings settings = SettingsOf(page, scanner);
  Demand(build.open(&settings) == 1);
  const Clock::time_point start = Clock::now();
  AcquisitionSetup setup{};
  build.setUp(page.pixelType, nullptr, &setup);
  AcquisitionBand band{setup.status, 0, 0, 0, 0};
  while (band.status == kAcquisitionGoOn && band.done == 0) {
    build.acquire(buffer.data(), setup.lineBytes * setup.heightLines, &band);
  }
  const std::chrono::duration<double, std::micro> passed = Clock::now() - start;
  Demand(band.status == kAcquisitionGoOn);
  build.close();
  return passed.count();
}

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

// Microseconds that a page takes, by each build.
std::array<double, 2> Compare(const std::array<Build, 2>& builds, const Page& page) {
  std::array<std::vector<double>, 2> times;
  for (int i = 0; i < kRepetitions; ++i) {
    for (std::size_t build = 0; build < 2; ++build) {
      times[build].push_back(TimePage(builds[build], page));
    }
  }
  return {Median(times[0]), Median(times[1])};
}

int Main(int count, char** arguments) {
  if (count != 3) throw std::runtime_error("Two files expected: ONE.dll OTHER.dll");
  const std::array<Build, 2> builds{Build(arguments[1]), Build(arguments[2])};
  std::vector<std::vector<std::string>> table{
      {"page at 300 dpi", "us, first", "us, second", "first / second"}};
  // No slower, but for what the medians move by from run to run.
  constexpr double kNoSlower = 1.02;
  std::vector<Goal> goals;
  for (const Page& page : kPages) {
    const auto [one, other] = Compare(builds, page);
    const std::string name = page.name;
    table.push_back({name, Number(one, 0), Number(other, 0), Number(one / other, 2)});
    goals.push_back({name + ", first / second", one / other, Goal::Kind::kAtMost, kNoSlower});
  }
  PrintTable(table);
  std::cout << '\n';
  PrintGoals(goals);
  return 0;
}

}  // namespace
}  // namespace pmddb832::bench

int main(int count, char** arguments) {
  try {
    return pmddb832::bench::Main(count, arguments);
  } catch (const std::exception& trouble) {
    std::cerr << trouble.what() << '\n';
    return 1;
  }
}
