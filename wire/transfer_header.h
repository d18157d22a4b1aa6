#pragma once

#include "wire/named_field.h"
#include "wire/value_names.h"
#include "wire/wire_block.h"

namespace pmddb832 {

// Reply to FS "G": how the image will be transferred.
using TransferHeader = std::array<std::uint8_t, 14>;

namespace transfer {

inline constexpr Field<std::uint8_t, 0> kStx;
inline constexpr Field<std::uint8_t, 1> kStatus;
inline constexpr Field<std::uint32_t, 2> kBlockBytes;  // in one full block
inline constexpr Field<std::uint32_t, 6> kFullBlocks;
inline constexpr Field<std::uint32_t, 10> kLastBlockBytes;

// In the header's status byte and in the one behind each block.
inline constexpr std::uint8_t kError = 0x80;

inline constexpr std::array kStatusNames{ValueName{kError, "error", true}};

inline constexpr std::array kFields{
    NamedChoice("start byte", kStx, names::kStx),  NamedFlags("status", kStatus, kStatusNames),
    Named("full block", kBlockBytes, "bytes"),     Named("full blocks", kFullBlocks),
    Named("last block", kLastBlockBytes, "bytes"),
};

}  // namespace transfer
}  // namespace pmddb832
