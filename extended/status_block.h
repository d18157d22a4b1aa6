#pragma once

#include "transport/status_bits.h"
#include "transport/wire_block.h"

namespace pmddb832 {

// Reply to FS "F".
using StatusBlock = std::array<std::uint8_t, 16>;

namespace status {

inline constexpr Field<std::uint8_t, 0> kMain;
inline constexpr Field<std::uint8_t, 1> kFeeder;
inline constexpr Field<std::uint8_t, 2> kTransparency;

inline constexpr std::uint8_t kNotReady = 0x40;  // main status

}  // namespace status
}  // namespace pmddb832
