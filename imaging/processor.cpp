#include "imaging/processor.h"

#include <cpuid.h>

namespace pmddb832 {
namespace {

constexpr std::uint32_t kExtendedFeatures = 7;

// features
constexpr std::uint32_t kSsse3 = 1u << 9;
constexpr std::uint32_t kOsxsave = 1u << 27;
constexpr std::uint32_t kAvx = 1u << 28;
// moreFeatures
constexpr std::uint32_t kAvx2 = 1u << 5;
constexpr std::uint32_t kAvx512F = 1u << 16;
constexpr std::uint32_t kAvx512Bw = 1u << 30;
// lastFeatures
constexpr std::uint32_t kAvx512Vbmi = 1u << 1;
// savedByXsave
constexpr std::uint32_t kXmmAndYmm = 0x06;
constexpr std::uint32_t kZmmAndMasks = 0xE0;

constexpr bool HasAll(std::uint32_t bits, std::uint32_t wanted) {
  return (bits & wanted) == wanted;
}

}  // namespace

std::uint32_t SavedByXsave(std::uint32_t features) {
  if (!HasAll(features, kOsxsave)) return 0;
  std::uint32_t low;
  std::uint32_t high;
  asm volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
  return low;
}

ProcessorAnswers AskProcessor() {
  ProcessorAnswers answers{};
  std::uint32_t a;
  std::uint32_t b;
  std::uint32_t c;
  std::uint32_t d;
  __cpuid(0, answers.highestLeaf, b, c, d);
  __cpuid(1, a, b, answers.features, d);
  __cpuid_count(kExtendedFeatures, 0, a, answers.moreFeatures, answers.lastFeatures, d);
  answers.savedByXsave = SavedByXsave(answers.features);
  return answers;
}

RowVectors WidestRowVectors(const ProcessorAnswers& answers) {
  if (!HasAll(answers.features, kSsse3)) return RowVectors::kNone;
  const bool hasAvx2 =
      HasAll(answers.features, kOsxsave | kAvx) && HasAll(answers.savedByXsave, kXmmAndYmm) &&
      answers.highestLeaf >= kExtendedFeatures && HasAll(answers.moreFeatures, kAvx2);
  if (!hasAvx2) return RowVectors::kSsse3;
  const bool hasAvx512 = HasAll(answers.savedByXsave, kZmmAndMasks) &&
                         HasAll(answers.moreFeatures, kAvx512F | kAvx512Bw) &&
                         HasAll(answers.lastFeatures, kAvx512Vbmi);
  return hasAvx512 ? RowVectors::kAvx512 : RowVectors::kAvx2;
}

}  // namespace pmddb832
