#include "imaging/processor.h"

#include <doctest/doctest.h>

#include <initializer_list>

#include "imaging/row_kernels.h"

namespace pmddb832::tests {
namespace {

constexpr std::uint32_t kSsse3 = 0x00000200;
constexpr std::uint32_t kOsxsaveAndAvx = 0x18000000;
constexpr std::uint32_t kAvx2 = 0x00000020;
constexpr std::uint32_t kAvx512FAndBw = 0x40010000;
constexpr std::uint32_t kVbmi = 0x00000002;

// A processor that can do everything, under a system that saves everything.
constexpr ProcessorAnswers kEverything{.highestLeaf = 0x1F,
                                       .features = kSsse3 | kOsxsaveAndAvx,
                                       .moreFeatures = kAvx2 | kAvx512FAndBw,
                                       .lastFeatures = kVbmi,
                                       .savedByXsave = 0xE7};

}  // namespace

TEST_CASE("rows are in AVX-512 where processor and system can do it") {
  CHECK(WidestRowVectors(kEverything) == RowVectors::kAvx512);
}

TEST_CASE("rows are in AVX2 without any one part of AVX-512") {
  for (const std::uint32_t missing : {0x00010000u, 0x40000000u}) {  // F, BW
    ProcessorAnswers answers = kEverything;
    answers.moreFeatures &= ~missing;
    CHECK(WidestRowVectors(answers) == RowVectors::kAvx2);
  }
  ProcessorAnswers answers = kEverything;
  answers.lastFeatures = ~kVbmi;
  CHECK(WidestRowVectors(answers) == RowVectors::kAvx2);
}

TEST_CASE("rows are in AVX2 where the system does not save all of AVX-512") {
  for (const std::uint32_t missing : {0x20u, 0x40u, 0x80u, 0xE0u}) {
    ProcessorAnswers answers = kEverything;
    answers.savedByXsave &= ~missing;
    CHECK(WidestRowVectors(answers) == RowVectors::kAvx2);
  }
}

TEST_CASE("rows are in SSSE3 without AVX2, also beside AVX-512") {
  ProcessorAnswers answers = kEverything;
  answers.moreFeatures &= ~kAvx2;
  CHECK(WidestRowVectors(answers) == RowVectors::kSsse3);
  answers.moreFeatures = 0;
  answers.lastFeatures = 0;
  CHECK(WidestRowVectors(answers) == RowVectors::kSsse3);
}

TEST_CASE("rows are in SSSE3 where the system does not save what AVX2 needs") {
  for (const std::uint32_t missing : {0x02u, 0x04u, 0xFFu}) {
    ProcessorAnswers answers = kEverything;
    answers.savedByXsave &= ~missing;
    CHECK(WidestRowVectors(answers) == RowVectors::kSsse3);
  }
  for (const std::uint32_t missing : {0x08000000u, 0x10000000u}) {  // OSXSAVE, AVX
    ProcessorAnswers answers = kEverything;
    answers.features &= ~missing;
    CHECK(WidestRowVectors(answers) == RowVectors::kSsse3);
  }
}

TEST_CASE("a processor is asked what the system saves where it knows the question only") {
  CHECK(SavedByXsave(~0x08000000u) == 0);
  const ProcessorAnswers answers = AskProcessor();
  CHECK(SavedByXsave(answers.features) == answers.savedByXsave);
}

TEST_CASE("what a processor says of a leaf that it does not have does not count") {
  ProcessorAnswers answers = kEverything;
  answers.highestLeaf = 6;
  CHECK(WidestRowVectors(answers) == RowVectors::kSsse3);
}

TEST_CASE("rows are plain loops without SSSE3, whatever else there is") {
  ProcessorAnswers answers = kEverything;
  answers.features &= ~kSsse3;
  CHECK(WidestRowVectors(answers) == RowVectors::kNone);
  CHECK(WidestRowVectors({}) == RowVectors::kNone);
}

TEST_CASE("each kind of vectors has its kernels") {
  CHECK(&RowKernelsFor(RowVectors::kNone) == &kScalarRowKernels);
  CHECK(&RowKernelsFor(RowVectors::kSsse3) == &kSsse3RowKernels);
  CHECK(&RowKernelsFor(RowVectors::kAvx2) == &kAvx2RowKernels);
  CHECK(&RowKernelsFor(RowVectors::kAvx512) == &kAvx512RowKernels);
}

TEST_CASE("this processor gets the widest vectors that it can do, at every call the same") {
  const RowKernels& widest = RowKernelsFor(WidestRowVectors(AskProcessor()));
  CHECK(&FastestRowKernels() == &widest);
  CHECK(&FastestRowKernels() == &widest);
#ifndef _WIN32
  CHECK((WidestRowVectors(AskProcessor()) != RowVectors::kNone) ==
        (__builtin_cpu_supports("ssse3") != 0));
  CHECK((WidestRowVectors(AskProcessor()) >= RowVectors::kAvx2) ==
        (__builtin_cpu_supports("avx2") != 0));
  CHECK((WidestRowVectors(AskProcessor()) >= RowVectors::kAvx512) ==
        (__builtin_cpu_supports("avx512bw") != 0 && __builtin_cpu_supports("avx512vbmi") != 0));
#endif
}

}  // namespace pmddb832::tests
