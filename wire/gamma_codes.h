#pragma once

#include <array>
#include <cstdint>

#include "wire/named_field.h"

namespace pmddb832 {

struct GammaRow {
  std::uint16_t gamma;  // times 100
  std::uint8_t code;
  std::string_view name;
};

inline constexpr std::array kGammaTable{
    GammaRow{100, 0x01, "gamma 1.0"}, GammaRow{220, 0x02, "gamma 2.2"},
    GammaRow{300, 0x00, "gamma 3.0"}, GammaRow{280, 0x10, "gamma 2.8"},
    GammaRow{250, 0x20, "gamma 2.5"},
};

// Code of `gamma`, which is gamma times 100; that of 2.2 for a gamma without a row.
constexpr std::uint8_t GammaCode(std::uint16_t gamma) {
  constexpr std::uint8_t kDefaultCode = 0x02;
  for (const GammaRow& row : kGammaTable) {
    if (row.gamma == gamma) return row.code;
  }
  return kDefaultCode;
}

namespace names {

inline constexpr std::array kGammaCodes = [] {
  std::array<ValueName, kGammaTable.size()> rows{};
  for (std::size_t i = 0; i < rows.size(); ++i) {
    rows[i] = {kGammaTable[i].code, kGammaTable[i].name};
  }
  return rows;
}();

}  // namespace names
}  // namespace pmddb832
