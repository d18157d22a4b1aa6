#pragma once

// What compilers spell differently: the attribute of a function that may use SSSE3 instructions,
// though the rest of its source may not, and the question whether the processor has them.

#ifdef _MSC_VER

#include <intrin.h>

#define PMDDB832_USES_SSSE3

namespace pmddb832 {

inline bool CpuHasSsse3() {
  constexpr int kFeatures = 1;
  constexpr int kSsse3 = 1 << 9;  // of the third register
  int registers[4];
  __cpuid(registers, kFeatures);
  return (registers[2] & kSsse3) != 0;
}

}  // namespace pmddb832

#else

#define PMDDB832_USES_SSSE3 __attribute__((target("ssse3")))

namespace pmddb832 {

inline bool CpuHasSsse3() {
  return __builtin_cpu_supports("ssse3") != 0;
}

}  // namespace pmddb832

#endif
