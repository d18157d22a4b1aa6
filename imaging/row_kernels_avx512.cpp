#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "imaging/instruction_set.h"
#include "imaging/row_kernels.h"

PMDDB832_USE_INSTRUCTIONS("avx512f,avx512bw,avx512vbmi")

namespace pmddb832 {
namespace {

constexpr int kVectorBytes = 64;
constexpr int kLaneBytes = 64;

}  // namespace
}  // namespace pmddb832

#include "imaging/vector_bytes.h"

namespace pmddb832 {
namespace {

inline Bytes LookUp(Bytes table, Bytes indices) {
  return reinterpret_cast<Bytes>(
      _mm512_shuffle_epi8(reinterpret_cast<__m512i>(table), reinterpret_cast<__m512i>(indices)));
}

template <int step>
constexpr int LaneStart(int lane) {
  return lane * step;
}

template <int step>
inline Bytes LoadLanes(const std::uint8_t* from) {
  return Load(from);
}

template <std::uint64_t mask>
inline Bytes Pick(Bytes lanes, Bytes order) {
  return reinterpret_cast<Bytes>(_mm512_maskz_permutexvar_epi8(
      mask, reinterpret_cast<__m512i>(order), reinterpret_cast<__m512i>(lanes)));
}

template <std::uint64_t mask>
inline Bytes PickMore(Bytes bytes, Bytes lanes, Bytes order) {
  return reinterpret_cast<Bytes>(_mm512_mask_permutexvar_epi8(
      reinterpret_cast<__m512i>(bytes), mask, reinterpret_cast<__m512i>(order),
      reinterpret_cast<__m512i>(lanes)));
}

inline Words MultiplyHigh(Words words, std::uint16_t factor) {
  return reinterpret_cast<Words>(_mm512_mulhi_epu16(reinterpret_cast<__m512i>(words),
                                                    _mm512_set1_epi16(static_cast<short>(factor))));
}

inline Bytes HighBytes(Bytes lower, Bytes upper) {
  static constexpr BytePattern kOddBytes = Counted(1, 2);
  return reinterpret_cast<Bytes>(_mm512_permutex2var_epi8(
      reinterpret_cast<__m512i>(lower), reinterpret_cast<__m512i>(Load(kOddBytes)),
      reinterpret_cast<__m512i>(upper)));
}

template <int step>
inline void StoreLanes(std::uint8_t* to, Bytes lanes) {
  Store(to, lanes);
}

inline void StoreAlternating(std::uint8_t* to, Bytes even, Bytes odd) {
  const auto evenBytes = reinterpret_cast<__m512i>(even);
  const auto oddBytes = reinterpret_cast<__m512i>(odd);
  const __m512i heads = _mm512_unpacklo_epi8(evenBytes, oddBytes);
  const __m512i tails = _mm512_unpackhi_epi8(evenBytes, oddBytes);
  const __m512i lower = _mm512_setr_epi64(0, 1, 8, 9, 2, 3, 10, 11);
  const __m512i upper = _mm512_setr_epi64(4, 5, 12, 13, 6, 7, 14, 15);
  Store(to, reinterpret_cast<Bytes>(_mm512_permutex2var_epi64(heads, lower, tails)));
  Store(to + kVectorBytes, reinterpret_cast<Bytes>(_mm512_permutex2var_epi64(heads, upper, tails)));
}

}  // namespace
}  // namespace pmddb832

#include "imaging/row_bodies.h"

PMDDB832_USE_NO_MORE

namespace pmddb832 {

const RowKernels kAvx512RowKernels = kBodies;

}  // namespace pmddb832
