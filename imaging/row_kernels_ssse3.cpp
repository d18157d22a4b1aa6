#include <tmmintrin.h>

#include "imaging/cpu_features.h"
#include "imaging/row_kernels.h"

// Each loop runs while its vectors lie inside the row; the plain loop does the rest.

namespace pmddb832 {
namespace {

PMDDB832_USES_SSSE3 inline __m128i Load(const std::uint8_t* from) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}

PMDDB832_USES_SSSE3 inline void Store(std::uint8_t* to, __m128i bytes) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), bytes);
}

// Reorders the bytes of groups of `groupBytes`, a few less than a vector holds: each group is
// stored with what follows it in the vector, which the next store overwrites. Returns the bytes
// that are done, whole groups. Four groups at a time keep the processor's loads and stores apart.
template <std::size_t groupBytes>
PMDDB832_USES_SSSE3 inline std::size_t Reorder(const std::uint8_t* from, std::uint8_t* to,
                                               std::size_t bytes, __m128i order) {
  std::size_t done = 0;
  for (; done + 3 * groupBytes + 16 <= bytes; done += 4 * groupBytes) {
    const __m128i group0 = Load(from + done);
    const __m128i group1 = Load(from + done + groupBytes);
    const __m128i group2 = Load(from + done + 2 * groupBytes);
    const __m128i group3 = Load(from + done + 3 * groupBytes);
    Store(to + done, _mm_shuffle_epi8(group0, order));
    Store(to + done + groupBytes, _mm_shuffle_epi8(group1, order));
    Store(to + done + 2 * groupBytes, _mm_shuffle_epi8(group2, order));
    Store(to + done + 3 * groupBytes, _mm_shuffle_epi8(group3, order));
  }
  for (; done + 16 <= bytes; done += groupBytes) {
    Store(to + done, _mm_shuffle_epi8(Load(from + done), order));
  }
  return done;
}

// High bytes of sixteen 2-byte samples.
PMDDB832_USES_SSSE3 inline __m128i HighBytes(const std::uint8_t* from) {
  return _mm_packus_epi16(_mm_srli_epi16(Load(from), 8), _mm_srli_epi16(Load(from + 16), 8));
}

// Index of 16 pixels whose 4-bit samples lie in the low nibbles of each byte. The tables hold the
// level of each sample in the cube, times 36, 6 and 1.
PMDDB832_USES_SSSE3 inline __m128i CubeIndices(__m128i first, __m128i middle, __m128i last) {
  const __m128i byFirst =
      _mm_setr_epi8(0, 0, 36, 36, 36, 36, 72, 72, 108, 108, -112, -112, -112, -112, -76, -76);
  const __m128i byMiddle = _mm_setr_epi8(0, 0, 6, 6, 6, 6, 12, 12, 18, 18, 24, 24, 24, 24, 30, 30);
  const __m128i byLast = _mm_setr_epi8(0, 0, 1, 1, 1, 1, 2, 2, 3, 3, 4, 4, 4, 4, 5, 5);
  return _mm_add_epi8(
      _mm_shuffle_epi8(byFirst, first),
      _mm_add_epi8(_mm_shuffle_epi8(byMiddle, middle), _mm_shuffle_epi8(byLast, last)));
}

}  // namespace

namespace ssse3_rows {

// The compiler's loop takes one vector a turn and runs at half speed when the branch predictor is
// out of luck; four a turn do not depend on it.
PMDDB832_USES_SSSE3 void Invert(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  const __m128i ones = _mm_set1_epi8(-1);
  for (; pixels >= 64; pixels -= 64, from += 64, to += 64) {
    for (std::size_t i = 0; i < 64; i += 16) Store(to + i, _mm_xor_si128(Load(from + i), ones));
  }
  scalar_rows::Invert(from, to, pixels);
}

PMDDB832_USES_SSSE3 void SwapBytes(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  const __m128i order = _mm_setr_epi8(2, 1, 0, 5, 4, 3, 8, 7, 6, 11, 10, 9, 14, 13, 12, 15);
  const std::size_t done = Reorder<15>(from, to, 3 * pixels, order);
  scalar_rows::SwapBytes(from + done, to + done, pixels - done / 3);
}

PMDDB832_USES_SSSE3 void SwapSamples(const std::uint8_t* from, std::uint8_t* to,
                                     std::size_t pixels) {
  const __m128i order = _mm_setr_epi8(4, 5, 2, 3, 0, 1, 10, 11, 8, 9, 6, 7, 12, 13, 14, 15);
  const std::size_t done = Reorder<12>(from, to, 6 * pixels, order);
  scalar_rows::SwapSamples(from + done, to + done, pixels - done / 6);
}

// In steps of 32 samples; 96 of them are 32 pixels.
PMDDB832_USES_SSSE3 void Reduce(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  for (; pixels >= 32; pixels -= 32, from += 192, to += 96) {
    for (std::size_t i = 0; i < 96; i += 32) {
      Store(to + i, HighBytes(from + 2 * i));
      Store(to + i + 16, HighBytes(from + 2 * i + 32));
    }
  }
  scalar_rows::Reduce(from, to, pixels);
}

// Five pixels a step, 30 bytes in two overlapping loads, stored as in Reorder.
PMDDB832_USES_SSSE3 void ReduceSwapped(const std::uint8_t* from, std::uint8_t* to,
                                       std::size_t pixels) {
  const __m128i head = _mm_setr_epi8(5, 3, 1, 11, 9, 7, -1, 15, 13, -1, -1, -1, -1, -1, -1, -1);
  const __m128i tail = _mm_setr_epi8(-1, -1, -1, -1, -1, -1, 3, -1, -1, 9, 7, 5, 15, 13, 11, -1);
  std::size_t done = 0;
  for (; done + 16 <= 3 * pixels; done += 15) {
    const __m128i first = _mm_shuffle_epi8(Load(from + 2 * done), head);
    const __m128i last = _mm_shuffle_epi8(Load(from + 2 * done + 14), tail);
    Store(to + done, _mm_or_si128(first, last));
  }
  scalar_rows::ReduceSwapped(from + 2 * done, to + done, pixels - done / 3);
}

// Four pairs of pixels: 12 bytes become 16. In each 16-bit pixel the nibble that belongs to it is
// moved to the top of its byte by a multiplication, by 1 for first pixels and by 16 for second
// ones.
PMDDB832_USES_SSSE3 void Unpack12(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  const __m128i outer = _mm_setr_epi8(2, 0, 2, 0, 5, 3, 5, 3, 8, 6, 8, 6, 11, 9, 11, 9);
  const __m128i middle = _mm_setr_epi8(-1, 1, -1, 1, -1, 4, -1, 4, -1, 7, -1, 7, -1, 10, -1, 10);
  const __m128i toTop = _mm_setr_epi16(1, 16, 1, 16, 1, 16, 1, 16);
  const __m128i lowNibbles = _mm_set1_epi16(0x0F0F);
  const __m128i topNibble = _mm_set1_epi16(static_cast<short>(0xF000));
  for (; pixels >= 12; pixels -= 8, from += 12, to += 16) {
    const __m128i packed = Load(from);
    const __m128i s2s0 = _mm_mullo_epi16(_mm_shuffle_epi8(packed, outer), toTop);
    const __m128i s1 = _mm_mullo_epi16(_mm_shuffle_epi8(packed, middle), toTop);
    Store(to, _mm_or_si128(_mm_and_si128(_mm_srli_epi16(s2s0, 4), lowNibbles),
                           _mm_and_si128(s1, topNibble)));
  }
  scalar_rows::Unpack12(from, to, pixels);
}

PMDDB832_USES_SSSE3 void PaletteIndices(const ColourPlanes& from, std::uint8_t* to,
                                        std::size_t pixels) {
  const __m128i nibble = _mm_set1_epi8(0x0F);
  const ColourPlanes planes = from;
  std::size_t done = 0;  // bytes of each plane
  for (; 2 * done + 32 <= pixels; done += 16) {
    const __m128i first = Load(planes.first + done);
    const __m128i middle = Load(planes.middle + done);
    const __m128i last = Load(planes.last + done);
    const __m128i left = CubeIndices(_mm_and_si128(_mm_srli_epi16(first, 4), nibble),
                                     _mm_and_si128(_mm_srli_epi16(middle, 4), nibble),
                                     _mm_and_si128(_mm_srli_epi16(last, 4), nibble));
    const __m128i right = CubeIndices(_mm_and_si128(first, nibble), _mm_and_si128(middle, nibble),
                                      _mm_and_si128(last, nibble));
    Store(to + 2 * done, _mm_unpacklo_epi8(left, right));
    Store(to + 2 * done + 16, _mm_unpackhi_epi8(left, right));
  }
  scalar_rows::PaletteIndices({planes.first + done, planes.middle + done, planes.last + done},
                              to + 2 * done, pixels - 2 * done);
}

}  // namespace ssse3_rows
}  // namespace pmddb832
