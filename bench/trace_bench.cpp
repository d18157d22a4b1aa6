// What the trace costs while there is no log: a chain of calls four deep, each with its trace
// scope, beside the same chain without.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <iostream>
#include <string>

#include "bench/median_run.h"
#include "platform/trace.h"

namespace pmddb832::bench {
namespace {

constexpr int kDepth = 4;

struct NoScope {
  template <std::size_t size>
  explicit NoScope(const char (&/*name*/)[size]) {}
};

// The work of each call stands for a real routine's: it uses what the deeper call returned.
template <class Scope, int depth>
[[gnu::noipa]] std::uint32_t Call(std::uint32_t value) {
  [[maybe_unused]] const Scope scope{"Bench::Call"};
  if constexpr (depth == 1) {
    return value + 1;
  } else {
    return Call<Scope, depth - 1>(value + 1) ^ value;
  }
}

template <class Scope>
void Chain(benchmark::State& state) {
  std::uint32_t value = 0;
  for (auto _ : state) {
    value = Call<Scope, kDepth>(value);
    benchmark::DoNotOptimize(value);
  }
}

int Main(int argc, char** argv) {
  benchmark::RegisterBenchmark("chain/untraced", Chain<NoScope>);
  benchmark::RegisterBenchmark("chain/traced", Chain<TraceScope>);
  const Medians medians = RunInterleaved(argc, argv);
  if (medians.empty()) return 1;
  PrintTable({{"chain of four calls, no log", "ns", "time / untraced"},
              {"untraced", Number(medians.at("chain/untraced"), 2), "1.00"},
              {"traced", Number(medians.at("chain/traced"), 2),
               Ratio(medians, "chain/traced", "chain/untraced")}});
  std::cout << '\n';
  const auto time = RatioOf(medians, "chain/traced", "chain/untraced");
  if (time.has_value()) {
    PrintGoals({{"traced chain, time / untraced", *time, Goal::Kind::kAtMost, 1.5}});
  }
  return 0;
}

}  // namespace
}  // namespace pmddb832::bench

int main(int argc, char** argv) {
  return pmddb832::bench::Main(argc, argv);
}
