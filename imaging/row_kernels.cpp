#include "imaging/row_kernels.h"

#include "imaging/cpu_features.h"

namespace pmddb832 {
namespace {

constexpr RowKernels kScalarKernels{
    scalar_rows::Invert,      scalar_rows::PreviewGrey,    scalar_rows::SwapBytes,
    scalar_rows::SwapSamples, scalar_rows::Reduce,         scalar_rows::ReduceSwapped,
    scalar_rows::Unpack12,    scalar_rows::PaletteIndices,
};
constexpr RowKernels kSsse3Kernels{
    ssse3_rows::Invert,      scalar_rows::PreviewGrey,   ssse3_rows::SwapBytes,
    ssse3_rows::SwapSamples, ssse3_rows::Reduce,         ssse3_rows::ReduceSwapped,
    ssse3_rows::Unpack12,    ssse3_rows::PaletteIndices,
};

constinit const RowKernels* chosenKernels = nullptr;

}  // namespace

const RowKernels& RowKernelsFor(bool hasSsse3) {
  return hasSsse3 ? kSsse3Kernels : kScalarKernels;
}

const RowKernels& FastestRowKernels() {
  if (chosenKernels == nullptr) chosenKernels = &RowKernelsFor(CpuHasSsse3());
  return *chosenKernels;
}

}  // namespace pmddb832
