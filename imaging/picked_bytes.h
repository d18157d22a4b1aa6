#pragma once

#include "imaging/vector_bytes.h"

// How rows are made whose bytes are those of the source in another order. Part of row_bodies.h.

namespace pmddb832 {
namespace {

// Where the bytes of a result come from: kRead bytes of the source become kWritten, and From(i) is
// the byte of the source for byte i, or kNone.
inline constexpr int kNone = -1;

template <int pixelBytes, int sampleBytes>
struct Reversed {
  static constexpr int kRead = pixelBytes;
  static constexpr int kWritten = pixelBytes;
  static constexpr int kPixelWritten = pixelBytes;
  static constexpr int From(int i) {
    const int inPixel = i % pixelBytes;
    const int sample = pixelBytes / sampleBytes - 1 - inPixel / sampleBytes;
    return i - inPixel + sample * sampleBytes + inPixel % sampleBytes;
  }
};

struct ReversedHighBytes {
  static constexpr int kRead = 6;
  static constexpr int kWritten = 3;
  static constexpr int kPixelWritten = 3;
  static constexpr int From(int i) { return 2 * Reversed<3, 1>::From(i) + 1; }
};

// Of two pixels in three bytes: the third byte and the first one, for each pixel.
struct OuterChannels {
  static constexpr int kRead = 3;
  static constexpr int kWritten = 4;
  static constexpr int kPixelWritten = 2;
  static constexpr int From(int i) { return i / 4 * 3 + (i % 2 == 0 ? 2 : 0); }
};

// Likewise: nothing, and the second byte.
struct MiddleChannel {
  static constexpr int kRead = 3;
  static constexpr int kWritten = 4;
  static constexpr int kPixelWritten = 2;
  static constexpr int From(int i) { return i % 2 == 0 ? kNone : i / 4 * 3 + 1; }
};

// Picks the bytes of a result from its source. Those of a lane come from one or more windows of a
// lane's length, which lie alike around each lane's share of the source. A lane makes kPerLane
// bytes of the result: all of its own, so that vectors can be stored at aligned addresses, or whole
// pixels, which takes fewer windows. That is faster where a lane is long, and where two bytes
// become one.
template <class Map>
class Picked {
 public:
  static constexpr bool kWholePixels =
      kLaneBytes % Map::kPixelWritten == 1 && (kLaneBytes > 16 || Map::kRead > Map::kWritten);
  static constexpr int kPerLane =
      kWholePixels ? kLaneBytes / Map::kPixelWritten * Map::kPixelWritten : kLaneBytes;
  static constexpr int kPerVector = kVectorBytes / kLaneBytes * kPerLane;

  // How far a block reads or writes beyond its own, in units.
  static constexpr int Margin() {
    constexpr int kLanes = kVectorBytes / kLaneBytes;
    const int before = -LaneStart<kShare>(0) - WindowStart(0);
    const int behind =
        LaneStart<kShare>(kLanes - 1) + WindowStart(kWindows - 1) + kLaneBytes - kLanes * kShare;
    const int written = kLaneBytes - kPerLane;
    return Larger(Larger(UnitsOf(before, Map::kRead), UnitsOf(behind, Map::kRead)),
                  UnitsOf(written, Map::kWritten));
  }

  // Vector 0, 1, ... of a block whose source begins at `from`.
  template <int vector>
  static inline Bytes Vector(const std::uint8_t* from) {
    const std::uint8_t* share =
        from + std::ptrdiff_t{vector} * kPerVector * Map::kRead / Map::kWritten;
    constexpr int kPlanned = vector % kPeriod;
    const Bytes bytes = Pick<kPlan.masks[kPlanned][0]>(LoadLanes<kShare>(share + WindowStart(0)),
                                                       Load(kPlan.orders[kPlanned][0]));
    return AddWindows<kPlanned, 1>(bytes, share);
  }

 private:
  // Three vectors hold whole pixels of three samples, whatever their width.
  static constexpr int kPeriod = kWholePixels || kLaneBytes % Map::kPixelWritten == 0 ? 1 : 3;
  static constexpr int kBytes = kPeriod * kVectorBytes;
  static constexpr int kShare = kPerLane * Map::kRead / Map::kWritten;

  static constexpr int Larger(int a, int b) { return a > b ? a : b; }
  static constexpr int UnitsOf(int bytes, int unit) { return (bytes + unit - 1) / unit; }

  template <int vector, int window>
  static inline Bytes AddWindows(Bytes bytes, const std::uint8_t* share) {
    if constexpr (window == kWindows) {
      return bytes;
    } else {
      const Bytes lanes = LoadLanes<kShare>(share + WindowStart(window));
      return AddWindows<vector, window + 1>(
          PickMore<kPlan.masks[vector][window]>(bytes, lanes, Load(kPlan.orders[vector][window])),
          share);
    }
  }

  // The byte of the source for byte i of the vectors, or kNone.
  static constexpr int From(int i) {
    const int inLane = i % kLaneBytes;
    return inLane < kPerLane ? Map::From(i / kLaneBytes * kPerLane + inLane) : kNone;
  }

  // How far behind the beginning of its lane in memory it is.
  static constexpr int Distance(int i) {
    const int vector = i / kVectorBytes;
    const int lane = i % kVectorBytes / kLaneBytes;
    return From(i) - vector * (kVectorBytes / kLaneBytes) * kShare - LaneStart<kShare>(lane);
  }

  static constexpr int Nearest() {
    int nearest = 0;
    for (int i = 0; i < kBytes; ++i) {
      if (From(i) != kNone && Distance(i) < nearest) nearest = Distance(i);
    }
    return nearest;
  }

  static constexpr int Farthest() {
    int farthest = 0;
    for (int i = 0; i < kBytes; ++i) {
      if (From(i) != kNone && Distance(i) > farthest) farthest = Distance(i);
    }
    return farthest;
  }

  static constexpr int kNearest = Nearest();
  static constexpr int kFarthest = Farthest();
  static constexpr int kWindows = (kFarthest - kNearest + kLaneBytes) / kLaneBytes;

  static constexpr int WindowStart(int window) {
    if (kWindows == 1) return kNearest;
    return kNearest + window * (kFarthest - kLaneBytes + 1 - kNearest) / (kWindows - 1);
  }

  // The first window that holds what byte i is made of.
  static constexpr bool IsIn(int window, int i) {
    if (From(i) == kNone) return false;
    const auto reaches = [i](int other) { return Distance(i) < WindowStart(other) + kLaneBytes; };
    return reaches(window) && (window == 0 || !reaches(window - 1));
  }

  struct Plan {
    BytePattern orders[std::size_t{kPeriod}][std::size_t{kWindows}];
    std::uint64_t masks[std::size_t{kPeriod}][std::size_t{kWindows}];
  };

  static constexpr Plan MakePlan() {
    constexpr std::uint8_t kZero = 0x80;
    Plan plan{};
    for (int i = 0; i < kBytes * kWindows; ++i) {
      const int window = i / kBytes;
      const int vector = i % kBytes / kVectorBytes;
      const int byte = i % kVectorBytes;
      const bool isIn = IsIn(window, i % kBytes);
      plan.orders[vector][window].bytes[byte] =
          isIn ? static_cast<std::uint8_t>(Distance(i % kBytes) - WindowStart(window)) : kZero;
      if (isIn) plan.masks[vector][window] |= std::uint64_t{1} << byte;
    }
    return plan;
  }

  static constexpr Plan kPlan = MakePlan();
};

}  // namespace
}  // namespace pmddb832
