#pragma once

#include "bench/ratio_table.h"

namespace pmddb832::bench {

// Both run the registered benchmarks, each of them fifteen times, unless the command line asks for
// something else with Google Benchmark's own flags. Figures that a benchmark counts by itself are
// kept too, under its name and theirs: "name/figure". Prints nothing but errors. Empty when the
// command line is wrong or a benchmark failed.

// For a moment each time, all of them interleaved at random: what disturbs one disturbs the others.
Medians RunInterleaved(int argc, char** argv);

// For a tenth of a second each time, one benchmark after the other: it finds in the caches what it
// left there.
Medians RunOneByOne(int argc, char** argv);

}  // namespace pmddb832::bench
