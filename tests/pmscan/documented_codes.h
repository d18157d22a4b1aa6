#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

namespace pmddb832::tests {

// The codes that a host may get from PMGetScanError (docs/error-codes.md).
inline constexpr std::array<std::uint32_t, 15> kDocumentedCodes{0,  1,  7,  8,  9,  10, 13, 14,
                                                                15, 16, 22, 31, 34, 35, 43};

inline bool IsDocumented(std::uint32_t code) {
  return std::find(kDocumentedCodes.begin(), kDocumentedCodes.end(), code) !=
         kDocumentedCodes.end();
}

}  // namespace pmddb832::tests
