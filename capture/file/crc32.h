#pragma once

#include <cstdint>
#include <span>

namespace capture {

// The CRC-32 of zip, PNG and Ethernet. `before` is that of the bytes in front, so that a long row
// can be summed in pieces.
std::uint32_t Crc32(std::span<const std::uint8_t> bytes, std::uint32_t before = 0);

}  // namespace capture
