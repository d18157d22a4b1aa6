#include "imaging/row_kernels.h"

namespace pmddb832 {
namespace {

constinit const RowKernels* chosenKernels = nullptr;

}  // namespace

const RowKernels& RowKernelsFor(RowVectors vectors) {
  switch (vectors) {
    case RowVectors::kSsse3:
      return kSsse3RowKernels;
    case RowVectors::kAvx2:
      return kAvx2RowKernels;
    case RowVectors::kAvx512:
      return kAvx512RowKernels;
    default:
      return kScalarRowKernels;
  }
}

const RowKernels& FastestRowKernels() {
  if (chosenKernels == nullptr) chosenKernels = &RowKernelsFor(WidestRowVectors(AskProcessor()));
  return *chosenKernels;
}

}  // namespace pmddb832
