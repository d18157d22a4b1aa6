#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "bench/peers.h"
#include "bench/ratio_table.h"
#include "imaging/row_kernels.h"

// The row kernels at 10,200 pixels, the width of a letter page at 1200 dpi, in the cache.
namespace pmddb832::bench {

struct Contender {
  std::string name;
  std::function<void()> run;
};

struct Job {
  std::string name;
  std::vector<Contender> contenders;  // all of them write the same bytes
  std::vector<Contender> copies;      // of as many bytes as the job reads and writes on average
  // Our speed is to be at least so many times that of the contender.
  std::string measuredBy;
  double goal;
};

// The kernels that another build has for these vectors.
using KernelsOfBuild = const RowKernels* (*)(RowVectors vectors);

// Every job, with our kernels and the scalar ones, a loop of 16-byte moves and memcpy, and with the
// kernels of another build, if there is one.
std::vector<Job> RowJobs(KernelsOfBuild other = nullptr);

// One row of a job, as another library does it.
Contender Row(const std::string& name, RowJob convert);

// False, with a line on standard error, when one of the contenders writes other bytes.
bool AllWriteTheSame(const std::vector<Job>& jobs);

// The table of all jobs, and a line for each goal; a median goes by "JOB/CONTENDER".
void PrintRows(const std::vector<Job>& jobs, const Medians& medians);

// The times of our kernels, divided by those of the other build's, for each kind of vectors.
void PrintBuilds(const std::vector<Job>& jobs, const Medians& medians);

}  // namespace pmddb832::bench
