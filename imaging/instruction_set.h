#pragma once

// PMDDB832_USE_INSTRUCTIONS("avx2") lets the functions from it to PMDDB832_USE_NO_MORE use these
// instructions, and no other function: of an inline function that several sources share, the linker
// keeps one copy, and that must run on every processor. So all headers but the rows' own are
// included in front of it.

#define PMDDB832_PRAGMA(tokens) _Pragma(#tokens)

#ifdef __clang__
#define PMDDB832_USE_INSTRUCTIONS(names) \
  PMDDB832_PRAGMA(clang attribute push(__attribute__((target(names))), apply_to = function))
#define PMDDB832_USE_NO_MORE PMDDB832_PRAGMA(clang attribute pop)
#else
#define PMDDB832_USE_INSTRUCTIONS(names) \
  PMDDB832_PRAGMA(GCC push_options)      \
  PMDDB832_PRAGMA(GCC target(names))
#define PMDDB832_USE_NO_MORE PMDDB832_PRAGMA(GCC pop_options)
#endif
