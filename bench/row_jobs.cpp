#include "bench/row_jobs.h"

#include <emmintrin.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <iostream>

#include "imaging/row_kernels.h"

namespace pmddb832::bench {
namespace {

constexpr std::size_t kPixels = 10200;
constexpr std::size_t kPlaneBytes = kPixels / 2;

using Plane = std::array<std::uint8_t, 6 * kPixels + 2048>;

// One arena for all, so that every contender meets the same addresses.
alignas(64) Plane source;
alignas(64) Plane destination;

Contender OnArena(const std::string& name, RowJob run, std::size_t count) {
  return {name, [=] { run(source.data(), destination.data(), count); }};
}

Contender Planes(const std::string& name, PlanesKernel convert) {
  const ColourPlanes planes{source.data(), source.data() + kPlaneBytes,
                            source.data() + 2 * kPlaneBytes};
  return {name, [=] { convert(planes, destination.data(), kPixels); }};
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

Job MakeJob(const std::string& name, std::size_t bytesRead, std::size_t bytesWritten,
            Contender ours, Contender scalar) {
  const std::size_t copied = (bytesRead + bytesWritten) / 2;
  return {name,
          {std::move(ours), std::move(scalar)},
          {OnArena("copy loop", CopyLoop, copied), OnArena("memcpy", Memcpy, copied)}};
}

Job RowKernelJob(const std::string& name, std::size_t bytesRead, std::size_t bytesWritten,
                 RowJob ours, RowJob scalar) {
  return MakeJob(name, bytesRead, bytesWritten, Row("ours", ours), Row("scalar", scalar));
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

}  // namespace

std::vector<Job> RowJobs() {
  for (std::size_t i = 0; i < source.size(); ++i) {
    source[i] = static_cast<std::uint8_t>(i * 2654435761u >> 13);
  }
  const RowKernels& fastest = FastestRowKernels();
  constexpr std::size_t kBytes = 3 * kPixels;
  return {
      RowKernelJob("inversion", kPixels, kPixels, fastest.invert, scalar_rows::Invert),
      RowKernelJob("preview map", kPixels, kPixels, fastest.previewGrey, scalar_rows::PreviewGrey),
      RowKernelJob("24-bit swap", kBytes, kBytes, fastest.swapBytes, scalar_rows::SwapBytes),
      RowKernelJob("48-bit swap", 2 * kBytes, 2 * kBytes, fastest.swapSamples,
                   scalar_rows::SwapSamples),
      RowKernelJob("48 to 24 bits, same order", 2 * kBytes, kBytes, fastest.reduce,
                   scalar_rows::Reduce),
      RowKernelJob("48 to 24 bits, reversed", 2 * kBytes, kBytes, fastest.reduceSwapped,
                   scalar_rows::ReduceSwapped),
      RowKernelJob("12-bit unpack", kBytes / 2, 2 * kPixels, fastest.unpack12,
                   scalar_rows::Unpack12),
      MakeJob("palette from three planes", kBytes / 2, kPixels,
              Planes("ours", fastest.paletteIndices),
              Planes("scalar", scalar_rows::PaletteIndices)),
  };
}

Contender Row(const std::string& name, RowJob convert) {
  return OnArena(name, convert, kPixels);
}

bool AllWriteTheSame(const std::vector<Job>& jobs) {
  return std::all_of(jobs.begin(), jobs.end(), [](const Job& job) { return AllWriteTheSame(job); });
}

void PrintRowTable(const std::vector<Job>& jobs, const Medians& medians) {
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

}  // namespace pmddb832::bench
