#pragma once

#include <string>
#include <vector>

#include "imaging/row_kernels.h"

namespace pmddb832::tests {

// The row kernels in one kind of vectors.
struct RowSet {
  std::string name;
  RowVectors vectors;
};

// All of them, and those that this processor and system can do. Each of the latter's tests is left
// out with a message where it is none of them.
inline const RowSet kScalarRows{"plain loops", RowVectors::kNone};
inline const std::vector<RowSet> kRowSets{kScalarRows,
                                          {"SSSE3", RowVectors::kSsse3},
                                          {"AVX2", RowVectors::kAvx2},
                                          {"AVX-512", RowVectors::kAvx512}};

inline bool RunsHere(const RowSet& set) {
  return set.vectors <= WidestRowVectors(AskProcessor());
}

}  // namespace pmddb832::tests
