// The row kernels at 10,200 pixels, the width of a letter page at 1200 dpi, in the cache: beside a
// copy of as many bytes, and beside the libraries that do the same job.

#include <benchmark/benchmark.h>
#include <emmintrin.h>

#include <array>
#include <cstring>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "bench/peers.h"
#include "bench/ratio_table.h"
#include "imaging/cpu_features.h"
#include "imaging/row_kernels.h"

namespace pmddb832::bench {
namespace {

constexpr std::size_t kPixels = 10200;

using Plane = std::array<std::uint8_t, 6 * kPixels + 2048>;

// One arena for all, so that every contender meets the same addresses.
alignas(64) Plane source;
alignas(64) Plane destination;

struct Contender {
  std::string name;
  std::function<void()> run;
};

struct Job {
  std::string name;
  std::size_t bytesRead;
  std::size_t bytesWritten;
  std::vector<Contender> contenders;  // all of them write the same bytes
};

Contender Row(const std::string& name, RowJob convert, std::size_t pixels = kPixels) {
  return {name, [=] { convert(source.data(), destination.data(), pixels); }};
}

Contender Planes(const std::string& name, PlanesKernel convert) {
  constexpr std::size_t kPlaneBytes = kPixels / 2;
  const ColourPlanes planes{source.data(), source.data() + kPlaneBytes,
                            source.data() + 2 * kPlaneBytes};
  return {name, [=] { convert(planes, destination.data(), kPixels); }};
}

std::vector<Job> Jobs() {
  const RowKernels& fastest = FastestRowKernels();
  constexpr std::size_t kBytes = 3 * kPixels;
  return {
      {"inversion",
       kPixels,
       kPixels,
       {Row("ours", fastest.invert), Row("scalar", scalar_rows::Invert),
        Row("OpenCV", opencv_rows::Invert)}},
      {"preview map",
       kPixels,
       kPixels,
       {Row("ours", fastest.previewGrey), Row("scalar", scalar_rows::PreviewGrey),
        Row("OpenCV", opencv_rows::PreviewGrey)}},
      {"24-bit swap",
       kBytes,
       kBytes,
       {Row("ours", fastest.swapBytes), Row("scalar", scalar_rows::SwapBytes),
        Row("libyuv", libyuv_rows::SwapBytes), Row("OpenCV", opencv_rows::SwapBytes)}},
      {"48-bit swap",
       2 * kBytes,
       2 * kBytes,
       {Row("ours", fastest.swapSamples), Row("scalar", scalar_rows::SwapSamples),
        Row("OpenCV", opencv_rows::SwapSamples)}},
      {"48 to 24 bits, same order",
       2 * kBytes,
       kBytes,
       {Row("ours", fastest.reduce), Row("scalar", scalar_rows::Reduce),
        Row("libyuv", libyuv_rows::Reduce), Row("OpenCV", opencv_rows::Reduce)}},
      {"48 to 24 bits, reversed",
       2 * kBytes,
       kBytes,
       {Row("ours", fastest.reduceSwapped), Row("scalar", scalar_rows::ReduceSwapped),
        Row("libyuv", libyuv_rows::ReduceSwapped), Row("OpenCV", opencv_rows::ReduceSwapped)}},
      {"12-bit unpack",
       kBytes / 2,
       2 * kPixels,
       {Row("ours", fastest.unpack12), Row("scalar", scalar_rows::Unpack12)}},
      {"palette from three planes",
       kBytes / 2,
       kPixels,
       {Planes("ours", fastest.paletteIndices), Planes("scalar", scalar_rows::PaletteIndices)}},
  };
}

// Moves of sixteen bytes, four a turn: with one a turn, the loop runs at full or at half speed by
// the luck of the branch predictor. The empty assembly keeps the compiler from calling memcpy
// instead.
void CopyLoop(const std::uint8_t* from, std::uint8_t* to, std::size_t bytes) {
  for (std::size_t turn = 0; turn < bytes; turn += 64) {
    for (std::size_t i = turn; i < turn + 64; i += 16) {
      __m128i vector = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + i));
      asm("" : "+x"(vector));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(to + i), vector);
    }
  }
}

void Memcpy(const std::uint8_t* from, std::uint8_t* to, std::size_t bytes) {
  std::memcpy(to, from, bytes);
}

bool AllWriteTheSame(const Job& job) {
  std::vector<std::uint8_t> expected;
  for (const Contender& contender : job.contenders) {
    destination.fill(0);
    contender.run();
    const std::vector<std::uint8_t> written(destination.begin(), destination.end());
    if (expected.empty()) expected = written;
    if (written == expected) continue;
    std::cerr << job.name << ": " << contender.name << " writes other bytes\n";
    return false;
  }
  return true;
}

void Register(const std::string& job, const Contender& contender) {
  benchmark::RegisterBenchmark((job + "/" + contender.name).c_str(),
                               [run = contender.run](benchmark::State& state) {
                                 for (auto _ : state) {
                                   run();
                                   benchmark::ClobberMemory();
                                 }
                               });
}

void RegisterAll(const Job& job) {
  const std::size_t copied = (job.bytesRead + job.bytesWritten) / 2;
  for (const Contender& contender : job.contenders) Register(job.name, contender);
  Register(job.name, Row("copy loop", CopyLoop, copied));
  Register(job.name, Row("memcpy", Memcpy, copied));
}

void Print(const std::vector<Job>& jobs, const Medians& medians) {
  std::vector<std::vector<std::string>> table{{"row of 10,200 pixels", "ns", "speed / copy loop",
                                               "speed / memcpy", "speed / scalar", "speed / libyuv",
                                               "speed / OpenCV"}};
  for (const Job& job : jobs) {
    const std::string ours = job.name + "/ours";
    const auto found = medians.find(ours);
    if (found == medians.end()) continue;
    std::vector<std::string> row{job.name, Number(found->second, 0)};
    for (const char* other : {"/copy loop", "/memcpy", "/scalar", "/libyuv", "/OpenCV"}) {
      row.push_back(Ratio(medians, job.name + other, ours));
    }
    table.push_back(row);
  }
  PrintTable(table);
}

int Main(int argc, char** argv) {
  for (std::size_t i = 0; i < source.size(); ++i) {
    source[i] = static_cast<std::uint8_t>(i * 2654435761u >> 13);
  }
  const std::vector<Job> jobs = Jobs();
  for (const Job& job : jobs) {
    if (!AllWriteTheSame(job)) return 1;
    RegisterAll(job);
  }
  const Medians medians = RunInterleaved(argc, argv);
  if (medians.empty()) return 1;
  Print(jobs, medians);
  return 0;
}

}  // namespace
}  // namespace pmddb832::bench

int main(int argc, char** argv) {
  return pmddb832::bench::Main(argc, argv);
}
