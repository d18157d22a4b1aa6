#include "capture/trace/trace_time.h"

#include <algorithm>

namespace capture {
namespace {

constexpr std::uint64_t kInASecond = 1'000'000;
constexpr unsigned kDecimals = 6;

std::uint64_t FromDecimal(std::uint64_t time, unsigned exponent) {
  for (; exponent < kDecimals; ++exponent) time *= 10;
  for (; exponent > kDecimals && time > 0; --exponent) time /= 10;
  return time;
}

std::uint64_t FromBinary(std::uint64_t time, unsigned exponent) {
  constexpr unsigned kMostBits = 40;  // of a fraction that can be multiplied
  const std::uint64_t seconds = exponent < 64 ? time >> exponent : 0;
  std::uint64_t fraction = exponent < 64 ? time & ((std::uint64_t{1} << exponent) - 1) : time;
  for (; exponent > kMostBits && fraction > 0; --exponent) fraction >>= 1;
  return seconds * kInASecond + (fraction * kInASecond >> std::min(exponent, kMostBits));
}

}  // namespace

std::uint64_t Microseconds(std::uint64_t time, const TimeUnit& unit) {
  constexpr std::uint8_t kOfTwo = 0x80;
  const unsigned exponent = unit.resolution & ~unsigned{kOfTwo};
  const bool isBinary = (unit.resolution & kOfTwo) != 0;
  return unit.offsetSeconds * kInASecond +
         (isBinary ? FromBinary(time, exponent) : FromDecimal(time, exponent));
}

}  // namespace capture
