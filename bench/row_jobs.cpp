#include "bench/row_jobs.h"

#include <emmintrin.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <iostream>

namespace pmddb832::bench {
namespace {

constexpr std::size_t kPixels = 10200;
constexpr std::size_t kPlaneBytes = kPixels / 2;

constexpr const char* kOurs = "ours";  // the kernels that are chosen here
constexpr const char* kOfOther = " of the other build";

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

// What a row is measured by: a copy of as many bytes where it only moves them, and where it
// computes the SSSE3 routine that was enough once; of the preview map that was the plain loop.
struct Measure {
  const char* contender;
  double speed;
};
constexpr Measure kCopy{"memcpy", 0.9};
constexpr Measure kNarrow{"SSSE3", 1.7};

Job MakeJob(const std::string& name, std::size_t bytesRead, std::size_t bytesWritten,
            Measure measure, std::vector<Contender> contenders) {
  const std::size_t copied = (bytesRead + bytesWritten) / 2;
  return {name,
          std::move(contenders),
          {OnArena("copy loop", CopyLoop, copied), OnArena("memcpy", Memcpy, copied)},
          measure.contender,
          measure.speed};
}

// The kernels of each kind of vectors that this processor has, and the chosen ones.
struct Kernels {
  std::string name;
  const RowKernels& rows;
};

std::vector<Kernels> KernelsHere(KernelsOfBuild other) {
  const RowVectors widest = WidestRowVectors(AskProcessor());
  std::vector<Kernels> kernels;
  const auto add = [&](const std::string& name, RowVectors vectors) {
    if (vectors > widest) return;
    kernels.push_back({name, RowKernelsFor(vectors)});
    if (other != nullptr) kernels.push_back({name + kOfOther, *other(vectors)});
  };
  add(kOurs, widest);
  add("scalar", RowVectors::kNone);
  add("SSSE3", RowVectors::kSsse3);
  add("AVX2", RowVectors::kAvx2);
  return kernels;
}

Job RowKernelJob(const std::string& name, std::size_t bytesRead, std::size_t bytesWritten,
                 Measure measure, RowKernel RowKernels::*row,
                 const std::vector<Kernels>& kernelsHere) {
  std::vector<Contender> contenders;
  contenders.reserve(kernelsHere.size());
  for (const Kernels& kernels : kernelsHere) {
    contenders.push_back(Row(kernels.name, kernels.rows.*row));
  }
  return MakeJob(name, bytesRead, bytesWritten, measure, std::move(contenders));
}

Job PaletteJob(const std::vector<Kernels>& kernelsHere) {
  std::vector<Contender> contenders;
  contenders.reserve(kernelsHere.size());
  for (const Kernels& kernels : kernelsHere) {
    contenders.push_back(Planes(kernels.name, kernels.rows.paletteIndices));
  }
  return MakeJob("palette from three planes", 3 * kPlaneBytes, kPixels, kNarrow,
                 std::move(contenders));
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

std::vector<Job> RowJobs(KernelsOfBuild other) {
  for (std::size_t i = 0; i < source.size(); ++i) {
    source[i] = static_cast<std::uint8_t>(i * 2654435761u >> 13);
  }
  constexpr std::size_t kBytes = 3 * kPixels;
  const std::vector<Kernels> kernels = KernelsHere(other);
  const auto row = [&](const char* name, std::size_t bytesRead, std::size_t bytesWritten,
                       Measure measure, RowKernel RowKernels::*kernel) {
    return RowKernelJob(name, bytesRead, bytesWritten, measure, kernel, kernels);
  };
  return {
      row("inversion", kPixels, kPixels, kCopy, &RowKernels::invert),
      row("preview map", kPixels, kPixels, kNarrow, &RowKernels::previewGrey),
      row("24-bit swap", kBytes, kBytes, kCopy, &RowKernels::swapBytes),
      row("48-bit swap", 2 * kBytes, 2 * kBytes, kCopy, &RowKernels::swapSamples),
      row("48 to 24 bits, same order", 2 * kBytes, kBytes, kCopy, &RowKernels::reduce),
      row("48 to 24 bits, reversed", 2 * kBytes, kBytes, kCopy, &RowKernels::reduceSwapped),
      row("12-bit unpack", kBytes / 2, 2 * kPixels, kNarrow, &RowKernels::unpack12),
      PaletteJob(kernels),
  };
}

Contender Row(const std::string& name, RowJob convert) {
  return OnArena(name, convert, kPixels);
}

bool AllWriteTheSame(const std::vector<Job>& jobs) {
  return std::all_of(jobs.begin(), jobs.end(), [](const Job& job) { return AllWriteTheSame(job); });
}

namespace {

void PrintRowTable(const std::vector<Job>& jobs, const Medians& medians) {
  constexpr const char* kOthers[]{"copy loop", "memcpy", "scalar", "SSSE3",
                                  "AVX2",      "libyuv", "OpenCV"};
  std::vector<std::vector<std::string>> table{{"row of 10,200 pixels", "ns"}};
  for (const char* other : kOthers) table.front().push_back(std::string("speed / ") + other);
  for (const Job& job : jobs) {
    const std::string ours = job.name + "/" + kOurs;
    const auto found = medians.find(ours);
    if (found == medians.end()) continue;
    std::vector<std::string> row{job.name, Number(found->second, 0)};
    for (const char* other : kOthers) row.push_back(Ratio(medians, job.name + "/" + other, ours));
    table.push_back(row);
  }
  PrintTable(table);
}

// The chosen rows, and those of processors that have no longer vectors than AVX2.
void PrintRowGoals(const std::vector<Job>& jobs, const Medians& medians) {
  std::vector<Goal> goals;
  const auto add = [&](const Job& job, const std::string& rows, const std::string& other,
                       double limit) {
    const auto speed = RatioOf(medians, job.name + "/" + other, job.name + "/" + rows);
    if (!speed.has_value()) return;
    const std::string name = rows == kOurs ? job.name : job.name + " in " + rows;
    goals.push_back({name + ", speed / " + other, *speed, Goal::Kind::kAtLeast, limit});
  };
  std::vector<std::string> sets{kOurs};
  if (WidestRowVectors(AskProcessor()) > RowVectors::kAvx2) sets.emplace_back("AVX2");
  for (const std::string& rows : sets) {
    for (const Job& job : jobs) {
      add(job, rows, job.measuredBy, job.goal);
      add(job, rows, "libyuv", 1);
      add(job, rows, "OpenCV", 1);
    }
  }
  PrintGoals(goals);
}

}  // namespace

void PrintRows(const std::vector<Job>& jobs, const Medians& medians) {
  PrintRowTable(jobs, medians);
  std::cout << '\n';
  PrintRowGoals(jobs, medians);
}

void PrintBuilds(const std::vector<Job>& jobs, const Medians& medians) {
  // No slower, but for what the medians move by from run to run.
  constexpr double kNoSlower = 1.03;
  std::vector<std::vector<std::string>> table{
      {"row, time / other build", "chosen", "AVX2", "SSSE3"}};
  std::vector<Goal> goals;
  for (const Job& job : jobs) {
    std::vector<std::string> row{job.name};
    for (const char* kernels : {kOurs, "AVX2", "SSSE3"}) {
      const std::string name = job.name + "/" + kernels;
      row.push_back(Ratio(medians, name, name + kOfOther));
      const auto time = RatioOf(medians, name, name + kOfOther);
      const std::string goal = job.name + ", " + kernels + " / other build";
      if (time.has_value()) goals.push_back({goal, *time, Goal::Kind::kAtMost, kNoSlower});
    }
    table.push_back(row);
  }
  PrintTable(table);
  std::cout << '\n';
  PrintGoals(goals);
}

}  // namespace pmddb832::bench
