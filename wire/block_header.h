#pragma once

#include "wire/named_field.h"
#include "wire/value_names.h"
#include "wire/wire_block.h"

namespace pmddb832 {

// In front of each block of lines, and the reply to ESC "G".
using BlockHeader = std::array<std::uint8_t, 6>;

namespace block {

inline constexpr Field<std::uint8_t, 0> kStx;
inline constexpr Field<std::uint8_t, 1> kStatus;
inline constexpr Field<std::uint16_t, 2> kLineBytes;
inline constexpr Field<std::uint16_t, 4> kLines;  // not sent where each block is one line
inline constexpr std::size_t kOneLineHeaderBytes = 4;

// status
inline constexpr std::uint8_t kError = 0x80;   // in the reply to ESC "G": ask again
inline constexpr std::uint8_t kDisarm = 0x40;  // no new start before the next set-up
inline constexpr std::uint8_t kLast = 0x20;    // the last block, which is not acknowledged

inline constexpr std::array kStatusNames{
    ValueName{kError, "error", true},
    ValueName{kDisarm, "no new start"},
    ValueName{kLast, "last block"},
};

inline constexpr std::array kFields{
    NamedChoice("start byte", kStx, names::kStx),
    NamedFlags("status", kStatus, kStatusNames),
    Named("line", kLineBytes, "bytes"),
    Named("lines", kLines),
};

}  // namespace block
}  // namespace pmddb832
