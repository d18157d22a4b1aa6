#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "simulator/device/scan_request.h"

namespace simulator {

// The colour mode of a code that both families know.
constexpr std::optional<ColorMode> FindSharedColorMode(std::uint8_t code) {
  struct Row {
    std::uint8_t code;
    ColorMode mode;
  };
  constexpr std::array kRows{
      Row{0x00, ColorMode::kGrey},         Row{0x10, ColorMode::kRed},
      Row{0x20, ColorMode::kGreen},        Row{0x30, ColorMode::kBlue},
      Row{0x13, ColorMode::kRedGreenBlue},
  };
  for (const Row& row : kRows) {
    if (row.code == code) return row.mode;
  }
  return std::nullopt;
}

}  // namespace simulator
