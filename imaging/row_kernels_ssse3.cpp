#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "imaging/instruction_set.h"
#include "imaging/row_kernels.h"

PMDDB832_USE_INSTRUCTIONS("ssse3")

namespace pmddb832 {
namespace {

constexpr int kVectorBytes = 16;
constexpr int kLaneBytes = 16;

}  // namespace
}  // namespace pmddb832

#include "imaging/vector_bytes.h"

namespace pmddb832 {
namespace {

inline Bytes LookUp(Bytes table, Bytes indices) {
  return reinterpret_cast<Bytes>(
      _mm_shuffle_epi8(reinterpret_cast<__m128i>(table), reinterpret_cast<__m128i>(indices)));
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
  return LookUp(lanes, order);
}

template <std::uint64_t mask>
inline Bytes PickMore(Bytes bytes, Bytes lanes, Bytes order) {
  return bytes | LookUp(lanes, order);
}

inline Words MultiplyHigh(Words words, std::uint16_t factor) {
  return reinterpret_cast<Words>(_mm_mulhi_epu16(reinterpret_cast<__m128i>(words),
                                                 _mm_set1_epi16(static_cast<short>(factor))));
}

inline Bytes HighBytes(Bytes lower, Bytes upper) {
  return reinterpret_cast<Bytes>(_mm_packus_epi16(reinterpret_cast<__m128i>(AsWords(lower) >> 8),
                                                  reinterpret_cast<__m128i>(AsWords(upper) >> 8)));
}

template <int step>
inline void StoreLanes(std::uint8_t* to, Bytes lanes) {
  Store(to, lanes);
}

inline void StoreAlternating(std::uint8_t* to, Bytes even, Bytes odd) {
  const auto evenBytes = reinterpret_cast<__m128i>(even);
  const auto oddBytes = reinterpret_cast<__m128i>(odd);
  Store(to, reinterpret_cast<Bytes>(_mm_unpacklo_epi8(evenBytes, oddBytes)));
  Store(to + kVectorBytes, reinterpret_cast<Bytes>(_mm_unpackhi_epi8(evenBytes, oddBytes)));
}

}  // namespace
}  // namespace pmddb832

#include "imaging/row_bodies.h"

PMDDB832_USE_NO_MORE

namespace pmddb832 {

const RowKernels kSsse3RowKernels = kBodies;

}  // namespace pmddb832
