#pragma once

#include <utility>

#include "imaging/picked_bytes.h"
#include "imaging/row_kernels.h"
#include "imaging/vector_bytes.h"

// The body of every row, written once for vectors of any width and compiled once for each set of
// instructions, by the source that includes this between PMDDB832_USE_INSTRUCTIONS and
// PMDDB832_USE_NO_MORE. It says in front what its set does in a way of its own:
//
//   kVectorBytes, kLaneBytes  of a vector, and of a lane, which is what Pick chooses from
//   LaneStart<step>           where a lane begins when they lie `step` bytes apart
//   LoadLanes, StoreLanes     a vector of such lanes
//   Pick<mask>                byte order[i] of its lane for each byte i. It is 0 where order[i] is
//                             0x80, and there the mask has no bit: a set looks at one of the two
//   PickMore<mask>            the same, and leaves the bytes alone there
//   LookUp                    in a table of sixteen bytes, which a vector repeats
//   MultiplyHigh              high halves of the products of 16-bit words
//   HighBytes                 those of the words of two vectors
//   StoreAlternating          two vectors, one byte of each in turn
//
// All of it lies in the unnamed namespace: the sets share no function.

namespace pmddb832 {
namespace {

// Fetches what the next turns of a loop read or write: the processor by itself is too late where a
// row is longer than its first cache.
template <std::size_t bytes>
inline void Prefetch(const std::uint8_t* next) {
  constexpr std::size_t kAhead = 1024;
  constexpr std::size_t kCacheLine = 64;
  const auto address = reinterpret_cast<std::uintptr_t>(next) + kAhead;
  for (std::size_t i = 0; i < bytes; i += kCacheLine) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr) It may lie beyond the row, and is not read.
    _mm_prefetch(reinterpret_cast<const char*>(address + i), _MM_HINT_T0);
  }
}

// Units of `Row` from `to` to the next aligned address; those of a whole block when no unit lies
// at one.
template <class Row>
inline std::size_t UnitsUntilAligned(const std::uint8_t* to) {
  constexpr std::size_t kPowerOf2 = Row::kWritten & (~Row::kWritten + 1);
  constexpr std::size_t kInverse = Row::kWritten / kPowerOf2 == 3 ? 171 : 1;
  static_assert(Row::kWritten / kPowerOf2 * kInverse % 256 == 1);
  const std::size_t missing = (~reinterpret_cast<std::uintptr_t>(to) + 1) % kVectorBytes;
  if (missing == 0 || missing % kPowerOf2 != 0) return Row::kUnits;
  return missing / kPowerOf2 * kInverse % (kVectorBytes / kPowerOf2);
}

// A row is converted in units, groups of bytes that belong together, and these in blocks of whole
// vectors. Where a row has whole vectors to store (kAligns), all behind the first block are stored
// at aligned addresses, but for the last block, which ends with the row: blocks overlap where it
// must be, and write the same bytes again. A block may read kMargin units beyond both of its ends;
// so many at the ends of the row, and a row that is too short for a block, are converted by the
// plain loop. Where blocks are so short that a turn of the loop costs (kTurn), it converts several.
template <class Row>
inline void ConvertInBlocks(const Row& row, std::size_t units) {
  if (units < Row::kUnits + 2 * Row::kMargin) return row.Plain(0, units);
  const std::size_t last = units - Row::kMargin - Row::kUnits;
  row.Block(Row::kMargin);
  std::size_t unit = Row::kMargin;
  unit += Row::kAligns ? UnitsUntilAligned<Row>(row.to + unit * Row::kWritten) : Row::kUnits;
  if constexpr (Row::kTurn > 1) {
    constexpr std::size_t kTurnUnits = Row::kTurn * Row::kUnits;
    for (; unit + kTurnUnits <= last; unit += kTurnUnits) row.Turn(unit);
  }
  for (; unit < last; unit += Row::kUnits) row.Block(unit);
  row.Block(last);
  if constexpr (Row::kMargin > 0) {
    row.Plain(0, Row::kMargin);
    row.Plain(units - Row::kMargin, Row::kMargin);
  }
}

// Rows that are converted kVectors vectors at a time, and kTurn times as many in a turn of the
// loop; Maker::Vector<i>(source) makes vector i.
template <class Maker, RowKernel plain>
struct Row {
  static constexpr std::size_t kRead = Maker::kRead;
  static constexpr std::size_t kWritten = Maker::kWritten;
  static constexpr std::size_t kUnits = Maker::kVectors * Maker::kPerVector / kWritten;
  static constexpr std::size_t kMargin = Maker::kMargin;
  static constexpr std::size_t kTurn = Maker::kTurn;
  static constexpr bool kAligns = Maker::kPerVector == kVectorBytes;

  void Plain(std::size_t unit, std::size_t units) const {
    plain(from + unit * kRead, to + unit * kWritten, units * Maker::kPixels);
  }

  void Block(std::size_t unit) const {
    ConvertVectors(unit, std::make_index_sequence<Maker::kVectors>());
  }

  void Turn(std::size_t unit) const {
    ConvertVectors(unit, std::make_index_sequence<kTurn * Maker::kVectors>());
  }

  // All vectors are made before one is stored: loads between stores slow both down.
  template <std::size_t... vector>
  void ConvertVectors(std::size_t unit, std::index_sequence<vector...> vectors) const {
    const std::uint8_t* source = from + unit * kRead;
    std::uint8_t* block = to + unit * kWritten;
    if constexpr (Maker::kPrefetches) {
      constexpr std::size_t kConverted = vectors.size() * Maker::kPerVector / kWritten;
      Prefetch<kConverted * kRead>(source);
      Prefetch<kConverted * kWritten>(block);
    }
    const Bytes made[]{Maker::template Vector<vector>(source)...};
    (StoreLanes<Maker::kPerLane>(block + vector * Maker::kPerVector, made[vector]), ...);
  }

  const std::uint8_t* from;
  std::uint8_t* to;
};

// What makes the vectors of a row that is picked from its source.
template <class Map>
struct PickedRow {
  static constexpr int kRead = Map::kRead;
  static constexpr int kWritten = Map::kWritten;
  static constexpr int kPixels = 1;  // of a unit
  static constexpr int kVectors = Picked<Map>::kWholePixels ? 2 : 3;
  static constexpr int kPerLane = Picked<Map>::kPerLane;
  static constexpr int kPerVector = Picked<Map>::kPerVector;
  static constexpr int kMargin = Picked<Map>::Margin();
  static constexpr int kTurn = 1;
  static constexpr bool kPrefetches = true;

  template <int vector>
  static inline Bytes Vector(const std::uint8_t* source) {
    return Picked<Map>::template Vector<vector>(source);
  }
};

// Of makers whose vectors are stored whole. One that reads beyond its source has a margin of its
// own.
struct WholeVectors {
  static constexpr int kPerLane = kLaneBytes;
  static constexpr int kPerVector = kVectorBytes;
  static constexpr int kMargin = 0;
  static constexpr int kTurn = 1;
};

struct InvertedRow : WholeVectors {
  static constexpr int kRead = 1;
  static constexpr int kWritten = 1;
  static constexpr int kPixels = 1;
  static constexpr int kVectors = 1;
  static constexpr int kTurn = 8;
  static constexpr bool kPrefetches = false;

  template <int vector>
  static inline Bytes Vector(const std::uint8_t* source) {
    Bytes ones = Bytes{} - 1;
    // Where the compiler knows that these are ones, each inversion waits for the one before it.
    asm("" : "+x"(ones));
    return Load(source + std::ptrdiff_t{vector} * kVectorBytes) ^ ones;
  }
};

// An eleventh less: the plain loop tells why, and why white is out of step.
struct PreviewRow : WholeVectors {
  static constexpr int kRead = 1;
  static constexpr int kWritten = 1;
  static constexpr int kPixels = 1;
  static constexpr int kVectors = 2;
  static constexpr bool kPrefetches = true;

  template <int vector>
  static inline Bytes Vector(const std::uint8_t* source) {
    constexpr std::uint16_t kEleventh = 5958;
    const Bytes grey = Load(source + std::ptrdiff_t{vector} * kVectorBytes);
    const Words even = MultiplyHigh(AsWords(grey) & 0xFF, kEleventh);
    const Words odd = MultiplyHigh(AsWords(grey) >> 8, kEleventh) << 8;
    const auto isWhite = reinterpret_cast<Bytes>(grey == 0xFF);
    return grey - AsBytes(even | odd) + (isWhite & 2);
  }
};

struct ReducedRow : WholeVectors {
  static constexpr int kRead = 6;
  static constexpr int kWritten = 3;
  static constexpr int kPixels = 1;
  static constexpr int kVectors = 3;
  static constexpr bool kPrefetches = true;

  template <int vector>
  static inline Bytes Vector(const std::uint8_t* source) {
    const std::uint8_t* samples = source + std::ptrdiff_t{2} * vector * kVectorBytes;
    return HighBytes(Load(samples), Load(samples + kVectorBytes));
  }
};

// In each 16-bit pixel the nibble that belongs to it is moved to the top of its byte by a
// multiplication, by 1 for first pixels and by 16 for second ones.
struct UnpackedRow : WholeVectors {
  static constexpr int kRead = 3;
  static constexpr int kWritten = 4;
  static constexpr int kPixels = 2;
  static constexpr int kVectors = 1;
  static constexpr int kMargin = Picked<OuterChannels>::Margin();
  static constexpr bool kPrefetches = true;

  template <int vector>
  static inline Bytes Vector(const std::uint8_t* source) {
    static constexpr BytePattern kToTop =
        Repeated({1, 0, 16, 0, 1, 0, 16, 0, 1, 0, 16, 0, 1, 0, 16, 0});
    Words toTop = AsWords(Load(kToTop));
    // Where a compiler knows the factors, it makes more instructions of each product than one.
    asm("" : "+x"(toTop));
    const Words outer = AsWords(Picked<OuterChannels>::Vector<0>(source)) * toTop;
    const Words middle = AsWords(Picked<MiddleChannel>::Vector<0>(source)) * toTop;
    return AsBytes((outer >> 4 & 0x0F0F) | (middle & 0xF000));
  }
};

// Index of pixels whose 4-bit samples lie in the low nibbles of each byte. The tables hold the
// level of each sample in the cube, times 36, 6 and 1.
inline Bytes CubeIndices(Bytes first, Bytes middle, Bytes last) {
  static constexpr BytePattern kByFirst =
      Repeated({0, 0, 36, 36, 36, 36, 72, 72, 108, 108, 144, 144, 144, 144, 180, 180});
  static constexpr BytePattern kByMiddle =
      Repeated({0, 0, 6, 6, 6, 6, 12, 12, 18, 18, 24, 24, 24, 24, 30, 30});
  static constexpr BytePattern kByLast = Repeated({0, 0, 1, 1, 1, 1, 2, 2, 3, 3, 4, 4, 4, 4, 5, 5});
  return LookUp(Load(kByFirst), first) + LookUp(Load(kByMiddle), middle) +
         LookUp(Load(kByLast), last);
}

inline Bytes HighNibbles(Bytes bytes) {
  return AsBytes(AsWords(bytes) >> 4) & 0x0F;
}

// A unit is a byte of each plane.
struct PaletteRow {
  static constexpr std::size_t kWritten = 2;
  static constexpr std::size_t kUnits = kVectorBytes;
  static constexpr std::size_t kMargin = 0;
  static constexpr std::size_t kTurn = 1;
  static constexpr bool kAligns = true;

  void Plain(std::size_t unit, std::size_t units) const { PlainPixels(unit, 2 * units); }

  void PlainPixels(std::size_t unit, std::size_t pixels) const {
    scalar_rows::PaletteIndices({planes.first + unit, planes.middle + unit, planes.last + unit},
                                to + kWritten * unit, pixels);
  }

  void Block(std::size_t unit) const {
    const Bytes first = Load(planes.first + unit);
    const Bytes middle = Load(planes.middle + unit);
    const Bytes last = Load(planes.last + unit);
    StoreAlternating(to + kWritten * unit,
                     CubeIndices(HighNibbles(first), HighNibbles(middle), HighNibbles(last)),
                     CubeIndices(first & 0x0F, middle & 0x0F, last & 0x0F));
  }

  ColourPlanes planes;
  std::uint8_t* to;
};

template <class Maker, RowKernel plain>
void Convert(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  const Row<Maker, plain> row{from, to};
  const std::size_t units = pixels / Maker::kPixels;
  ConvertInBlocks(row, units);
  if (pixels % Maker::kPixels == 0) return;
  plain(from + units * Maker::kRead, to + units * Maker::kWritten, pixels % Maker::kPixels);
}

// NOLINTNEXTLINE(readability-non-const-parameter) The row writes there.
inline void PaletteIndices(const ColourPlanes& from, std::uint8_t* to, std::size_t pixels) {
  const PaletteRow row{from, to};
  ConvertInBlocks(row, pixels / 2);
  if (pixels % 2 != 0) row.PlainPixels(pixels / 2, 1);
}

inline constexpr RowKernels kBodies{
    Convert<InvertedRow, scalar_rows::Invert>,
    Convert<PreviewRow, scalar_rows::PreviewGrey>,
    Convert<PickedRow<Reversed<3, 1>>, scalar_rows::SwapBytes>,
    Convert<PickedRow<Reversed<6, 2>>, scalar_rows::SwapSamples>,
    Convert<ReducedRow, scalar_rows::Reduce>,
    Convert<PickedRow<ReversedHighBytes>, scalar_rows::ReduceSwapped>,
    Convert<UnpackedRow, scalar_rows::Unpack12>,
    PaletteIndices,
};

}  // namespace
}  // namespace pmddb832
