#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "imaging/instruction_set.h"
#include "imaging/row_kernels.h"

PMDDB832_USE_INSTRUCTIONS("avx2")

namespace pmddb832 {
namespace {

constexpr int kVectorBytes = 32;
constexpr int kLaneBytes = 16;

}  // namespace
}  // namespace pmddb832

#include "imaging/vector_bytes.h"

namespace pmddb832 {
namespace {

inline Bytes LookUp(Bytes table, Bytes indices) {
  return reinterpret_cast<Bytes>(
      _mm256_shuffle_epi8(reinterpret_cast<__m256i>(table), reinterpret_cast<__m256i>(indices)));
}

inline __m128i LoadLane(const std::uint8_t* from) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}

inline void StoreLane(std::uint8_t* to, __m128i lane) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), lane);
}

// Lanes that overlap come out of one load: each has what belongs to it, the first one at its end
// and the second one at its beginning.
template <int step>
constexpr int LaneStart(int lane) {
  return step < kLaneBytes ? lane * kLaneBytes - (kLaneBytes - step) : lane * step;
}

template <int step>
inline Bytes LoadLanes(const std::uint8_t* from) {
  if constexpr (step <= kLaneBytes) {
    return Load(from + LaneStart<step>(0));
  } else {
    const __m256i lane = _mm256_castsi128_si256(LoadLane(from));
    return reinterpret_cast<Bytes>(_mm256_inserti128_si256(lane, LoadLane(from + step), 1));
  }
}

template <int step>
inline void StoreLanes(std::uint8_t* to, Bytes lanes) {
  if constexpr (step == kLaneBytes) {
    Store(to, lanes);
  } else {
    const auto both = reinterpret_cast<__m256i>(lanes);
    StoreLane(to, _mm256_castsi256_si128(both));
    StoreLane(to + step, _mm256_extracti128_si256(both, 1));
  }
}

template <std::uint64_t mask>
inline Bytes Pick(Bytes lanes, Bytes order) {
  return LookUp(lanes, order);
}

template <std::uint64_t mask>
inline Bytes PickMore(Bytes bytes, Bytes lanes, Bytes order) {
  return bytes | LookUp(lanes, order);
}

inline Words MultiplyHigh(Words words, std::uint16_t factor) {
  return reinterpret_cast<Words>(_mm256_mulhi_epu16(reinterpret_cast<__m256i>(words),
                                                    _mm256_set1_epi16(static_cast<short>(factor))));
}

inline Bytes HighBytes(Bytes lower, Bytes upper) {
  constexpr int kLanesInOrder = 0b11'01'10'00;
  const __m256i packed = _mm256_packus_epi16(reinterpret_cast<__m256i>(AsWords(lower) >> 8),
                                             reinterpret_cast<__m256i>(AsWords(upper) >> 8));
  return reinterpret_cast<Bytes>(_mm256_permute4x64_epi64(packed, kLanesInOrder));
}

// Lane by lane: to put them in order would take as long as the rest.
inline void StoreAlternating(std::uint8_t* to, Bytes even, Bytes odd) {
  const auto evenBytes = reinterpret_cast<__m256i>(even);
  const auto oddBytes = reinterpret_cast<__m256i>(odd);
  const __m256i heads = _mm256_unpacklo_epi8(evenBytes, oddBytes);
  const __m256i tails = _mm256_unpackhi_epi8(evenBytes, oddBytes);
  StoreLane(to, _mm256_castsi256_si128(heads));
  StoreLane(to + kLaneBytes, _mm256_castsi256_si128(tails));
  StoreLane(to + std::ptrdiff_t{2} * kLaneBytes, _mm256_extracti128_si256(heads, 1));
  StoreLane(to + std::ptrdiff_t{3} * kLaneBytes, _mm256_extracti128_si256(tails, 1));
}

}  // namespace
}  // namespace pmddb832

#include "imaging/row_bodies.h"

PMDDB832_USE_NO_MORE

namespace pmddb832 {

const RowKernels kAvx2RowKernels = kBodies;

}  // namespace pmddb832
