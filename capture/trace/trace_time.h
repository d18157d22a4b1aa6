#pragma once

#include <cstdint>

namespace capture {

// How an interface of a pcapng file counts time.
struct TimeUnit {
  // The exponent of ten, or with the upper bit of two, that divides a second.
  std::uint8_t resolution = 6;
  std::uint64_t offsetSeconds = 0;  // to add; a negative one in two's complement
};

// The time in microseconds. What is too large for 64 bits wraps around.
std::uint64_t Microseconds(std::uint64_t time, const TimeUnit& unit);

}  // namespace capture
