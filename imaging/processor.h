#pragma once

#include <cstdint>

namespace pmddb832 {

// What a processor tells of itself, and of its registers that the system saves.
struct ProcessorAnswers {
  std::uint32_t highestLeaf;   // CPUID 0: eax
  std::uint32_t features;      // CPUID 1: ecx
  std::uint32_t moreFeatures;  // CPUID 7, 0: ebx; anything where there is no such leaf
  std::uint32_t lastFeatures;  // CPUID 7, 0: ecx; likewise
  std::uint32_t savedByXsave;  // XGETBV 0: eax; 0 where the system does not use XSAVE
};

// Of this processor.
ProcessorAnswers AskProcessor();

// XGETBV 0: eax; 0 where the features, CPUID 1: ecx, do not say that it may be asked.
std::uint32_t SavedByXsave(std::uint32_t features);

// The vectors that rows can be converted in. Each implies those in front of it.
enum class RowVectors : std::uint8_t {
  kNone,
  kSsse3,   // 16 bytes
  kAvx2,    // 32 bytes
  kAvx512,  // 64 bytes; with the extensions for bytes, BW and VBMI
};

// The widest that processor and system can do.
RowVectors WidestRowVectors(const ProcessorAnswers& answers);

}  // namespace pmddb832
