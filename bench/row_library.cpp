// The row kernels of one build as a library, for the benchmark of another build.

#include "imaging/row_kernels.h"

extern "C" __declspec(dllexport) const pmddb832::RowKernels* RowKernelsOfBuild(
    pmddb832::RowVectors vectors) {
  return &pmddb832::RowKernelsFor(vectors);
}
