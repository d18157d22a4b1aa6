#pragma once

#include <cstdint>

namespace simulator {

inline constexpr std::uint8_t kStx = 0x02;  // first byte of an information reply
inline constexpr std::uint8_t kAck = 0x06;
inline constexpr std::uint8_t kFormFeed = 0x0C;  // eject
inline constexpr std::uint8_t kNak = 0x15;
inline constexpr std::uint8_t kCancel = 0x18;
inline constexpr std::uint8_t kEndOfMedium = 0x19;    // feed
inline constexpr std::uint8_t kEscape = 0x1B;         // prefix of a standard command letter
inline constexpr std::uint8_t kFileSeparator = 0x1C;  // prefix of an extended command letter

}  // namespace simulator
