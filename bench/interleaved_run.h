#pragma once

#include "bench/ratio_table.h"

namespace pmddb832::bench {

// Runs the registered benchmarks in fifteen short repetitions, all of them interleaved at random,
// unless the command line asks for something else with Google Benchmark's own flags. Prints nothing
// but errors. Empty when the command line is wrong or a benchmark failed.
Medians RunInterleaved(int argc, char** argv);

}  // namespace pmddb832::bench
