#pragma once

#include <cstdint>

namespace pmddb832 {

inline constexpr std::uint8_t kStx = 0x02;  // first byte of an information reply
inline constexpr std::uint8_t kAck = 0x06;  // the only positive acknowledge
inline constexpr std::uint8_t kFf = 0x0C;   // eject the page
inline constexpr std::uint8_t kNak = 0x15;  // as good as any other byte that is not kAck
inline constexpr std::uint8_t kCan = 0x18;  // cancel; the scanner acknowledges it
inline constexpr std::uint8_t kEm = 0x19;   // feed a page
inline constexpr std::uint8_t kEsc = 0x1B;  // prefix of a standard command letter
inline constexpr std::uint8_t kFs = 0x1C;   // prefix of an extended command letter

}  // namespace pmddb832
