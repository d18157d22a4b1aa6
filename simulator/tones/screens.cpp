#include "simulator/tones/screens.h"

#include <array>

namespace simulator {
namespace {

// The place of a pixel in its screen.
struct Place {
  std::uint32_t number = 0;  // from 0
  std::uint32_t count = 1;
};

// Dispersed: each bit of the coordinates halves the distance.
template <std::uint32_t kBits>
Place Dispersed(std::uint32_t x, std::uint32_t y) {
  std::uint32_t number = 0;
  for (std::uint32_t bit = 0; bit < kBits; ++bit) {
    number = number << 2 | ((x ^ y) >> bit & 1) << 1 | (y >> bit & 1);
  }
  return {number, 1u << 2 * kBits};
}

// Dots grow from the middle of a cell.
Place Dots(std::uint32_t x, std::uint32_t y) {
  constexpr std::array<std::array<std::uint8_t, 4>, 4> kCell{
      {{12, 5, 6, 13}, {4, 0, 1, 7}, {11, 3, 2, 8}, {15, 10, 9, 14}}};
  return {kCell[y % 4][x % 4], 16};
}

Place LargeDots(std::uint32_t x, std::uint32_t y) {
  const Place fine = Dispersed<1>(x, y);
  return {4 * Dots(x / 2, y / 2).number + fine.number, 64};
}

// Lines grow from row 1 of four.
Place Lines(std::uint32_t x, std::uint32_t y) {
  constexpr std::array<std::uint8_t, 4> kRow{2, 0, 1, 3};
  constexpr std::array<std::uint8_t, 4> kColumn{0, 2, 1, 3};
  return {4u * kRow[y % 4] + kColumn[x % 4], 16};
}

Place Diagonals(std::uint32_t x, std::uint32_t y) {
  return Lines(x, x + y);
}

struct Row {
  std::uint8_t code;
  char lowestLevel;
  Place (*place)(std::uint32_t x, std::uint32_t y);  // null: the threshold alone
};
constexpr std::uint8_t kMixed = 0x03;
constexpr std::array kRows{
    Row{kThresholdAlone, '0', nullptr},
    Row{0x00, '0', &Dispersed<1>},
    Row{0x10, '0', &Dispersed<2>},
    Row{0x20, '0', &Dispersed<3>},
    Row{0x80, '4', &Dots},
    Row{0x90, '4', &LargeDots},
    Row{0xA0, '4', &Lines},
    Row{0xB0, '4', &Diagonals},
    Row{kMixed, '5', &Dispersed<2>},
};

const Row* FindRow(std::uint8_t code) {
  for (const Row& row : kRows) {
    if (row.code == code) return &row;
  }
  return nullptr;
}

}  // namespace

bool IsKnownScreen(std::uint8_t code, char levelDigit) {
  const Row* const row = FindRow(code);
  return row != nullptr && levelDigit >= row->lowestLevel;
}

bool IsWhite(std::uint8_t screen, std::uint8_t threshold, std::uint16_t sample, std::uint32_t x,
             std::uint32_t y) {
  if (screen == kThresholdAlone) return sample >> 8 >= threshold;
  constexpr std::uint16_t kQuarter = 0x4000;
  if (screen == kMixed && sample < kQuarter) return false;
  if (screen == kMixed && sample >= 3 * kQuarter) return true;
  const Place place = FindRow(screen)->place(x, y);
  return sample >= (2 * place.number + 1) * (0x8000 / place.count);
}

}  // namespace simulator
