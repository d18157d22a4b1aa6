#pragma once

#include <cstddef>
#include <cstdint>

namespace simulator {

// Layouts of the standard command set, little-endian, as the device knows them.

namespace product_reply {  // data of the reply to ESC ?
inline constexpr std::size_t kNameOffset = 8;
inline constexpr std::size_t kNameBytes = 16;
}  // namespace product_reply

namespace block_header {  // reply to ESC G, and in front of each block
inline constexpr std::size_t kBytes = 6;
inline constexpr std::size_t kLineModeBytes = 4;  // without the number of lines
// Status.
inline constexpr std::uint8_t kError = 0x80;  // in the reply to ESC G: ask again
inline constexpr std::uint8_t kLast = 0x20;
}  // namespace block_header

}  // namespace simulator
