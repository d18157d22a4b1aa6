#pragma once

#include <array>
#include <cstdint>

namespace pmddb832 {

struct HalftoneRow {
  std::uint8_t code;
  std::uint8_t minimumLevel;  // level digit from which on the row is supported
};

inline constexpr std::array<HalftoneRow, 10> kHalftoneTable{{{0x01, 1},
                                                             {0x00, 1},
                                                             {0x10, 1},
                                                             {0x20, 1},
                                                             {0x80, 4},
                                                             {0x90, 4},
                                                             {0xA0, 4},
                                                             {0xB0, 4},
                                                             {0x03, 5},
                                                             {0x00, 6}}};

// Sent in place of a row's code with ScannerSettings::halftoneOverride.
inline constexpr std::uint8_t kHalftoneOverrideCode = 3;

// Code of a row, 0 to 9; row 0 stands for every other index.
constexpr std::uint8_t HalftoneCode(std::int32_t row) {
  const bool listed = row >= 0 && row < static_cast<std::int32_t>(kHalftoneTable.size());
  return kHalftoneTable[listed ? static_cast<std::size_t>(row) : 0].code;
}

// Leading rows that a scanner of the level digit supports, 0 to 10.
constexpr std::uint16_t SupportedHalftones(char levelDigit) {
  const int level = static_cast<std::int8_t>(levelDigit) - '0';
  std::uint16_t count = 0;
  while (count < kHalftoneTable.size() && kHalftoneTable[count].minimumLevel <= level) ++count;
  return count;
}

}  // namespace pmddb832
