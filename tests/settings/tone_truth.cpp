#include "tests/settings/tone_truth.h"

#include <algorithm>
#include <cmath>

#include "tests/scans/whole_scan.h"

namespace pmddb832::tests {
namespace {

constexpr double kFullLight = 65535;

double CutOff(double sample) {
  return std::clamp(sample, 0.0, kFullLight);
}

using Cell = std::array<std::array<std::uint32_t, 4>, 4>;
constexpr Cell kMedium{{{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}}};
constexpr Cell kDots{{{12, 5, 6, 13}, {4, 0, 1, 7}, {11, 3, 2, 8}, {15, 10, 9, 14}}};
constexpr Cell kLines{{{8, 10, 9, 11}, {0, 2, 1, 3}, {4, 6, 5, 7}, {12, 14, 13, 15}}};
constexpr std::array<std::array<std::uint32_t, 2>, 2> kFine{{{0, 2}, {3, 1}}};

// The light from which on a place in the screen of a halftone is white.
double ScreenThreshold(std::uint8_t halftone, std::uint32_t x, std::uint32_t y) {
  const auto level = [](std::uint32_t place, std::uint32_t count) {
    return (2.0 * place + 1) / (2.0 * count) * 65536;
  };
  switch (halftone) {
    case 1:
    case 9:
      return level(kFine[y % 2][x % 2], 4);
    case 3:
      return level(4 * kMedium[y % 4][x % 4] + kFine[y / 4 % 2][x / 4 % 2], 64);
    case 4:
      return level(kDots[y % 4][x % 4], 16);
    case 5:
      return level(4 * kDots[y / 2 % 4][x / 2 % 4] + kFine[y % 2][x % 2], 64);
    case 6:
      return level(kLines[y % 4][x % 4], 16);
    case 7:
      return level(kLines[(x + y) % 4][x % 4], 16);
    default:
      return level(kMedium[y % 4][x % 4], 16);
  }
}

double TableTone(const pmscan::GammaTables::Table& table, double sample) {
  const auto place = static_cast<std::size_t>(sample / 257);
  const double here = table[place];
  const double next = table[std::min<std::size_t>(place + 1, 255)];
  return here * 257 + (next - here) * (sample - 257.0 * static_cast<double>(place));
}

pmscan::GammaTables::Table BuiltIn(std::uint16_t gamma) {
  pmscan::GammaTables::Table table{};
  for (std::size_t place = 0; place < 256; ++place) {
    const double tone = std::pow(static_cast<double>(place) / 255, 100.0 / gamma);
    table[place] = static_cast<std::uint8_t>(std::lround(255 * tone));
  }
  return table;
}

}  // namespace

// The bed ends at the left and the top; beyond, a sample stands for its neighbour.
double ToneTruth::Sharpened(std::uint32_t x, std::uint32_t y, std::uint32_t channel) const {
  const double sample = Sample(document_, x, y, channel);
  const double around =
      Sample(document_, x == 0 ? 0 : x - 1, y, channel) + Sample(document_, x + 1, y, channel) +
      Sample(document_, x, y == 0 ? 0 : y - 1, channel) + Sample(document_, x, y + 1, channel);
  const double step = image_.sharpness > 0 ? 1.0 / 2 : 1.0 / 4;
  return CutOff(sample + std::trunc(image_.sharpness * step * (sample - around / 4)));
}

std::array<double, 3> ToneTruth::Mixed(std::uint32_t x, std::uint32_t y) const {
  std::array<double, 3> rgb{};
  for (std::uint32_t channel = 0; channel < 3; ++channel) rgb[channel] = Sharpened(x, y, channel);
  if (!image_.colorMatrix) return rgb;
  std::array<double, 3> mixed{};
  for (std::size_t place = 0; place < 9; ++place) {
    const int factor = static_cast<std::int8_t>((*image_.colorMatrix)[place]);
    mixed[place / 3] += factor * rgb[place % 3] / 32;
  }
  for (double& sample : mixed) sample = CutOff(std::trunc(sample));
  return mixed;
}

double ToneTruth::Toned(double sample, std::uint32_t channel) const {
  if (image_.gammaTables) {
    const pmscan::GammaTables& tables = *image_.gammaTables;
    if (channel == 0) return TableTone(tables.red, sample);
    return TableTone(channel == 1 ? tables.green : tables.blue, sample);
  }
  return image_.gamma == 100 ? sample : TableTone(BuiltIn(image_.gamma), sample);
}

std::uint16_t ToneTruth::Brightened(double sample) const {
  return static_cast<std::uint16_t>(CutOff(sample + image_.brightness * 8192.0));
}

std::array<std::uint16_t, 3> ToneTruth::Colour(std::uint32_t x, std::uint32_t y) const {
  const std::array<double, 3> rgb = Mixed(x, y);
  std::array<std::uint16_t, 3> colour{};
  for (std::uint32_t i = 0; i < 3; ++i) colour[i] = Brightened(Toned(rgb[i], i));
  return colour;
}

std::uint16_t ToneTruth::Grey(std::uint32_t x, std::uint32_t y) const {
  const std::array<double, 3> rgb = Mixed(x, y);
  if (image_.channel != 0) {
    const std::uint32_t channel = image_.channel - 1u;
    return Brightened(Toned(rgb[channel], channel));
  }
  const double mix = 19595 * Toned(rgb[0], 0) + 38470 * Toned(rgb[1], 1) + 7471 * Toned(rgb[2], 2);
  return Brightened(std::floor((mix + 32768) / 65536));
}

bool ToneTruth::IsWhite(std::uint32_t x, std::uint32_t y) const {
  const std::uint16_t grey = Grey(x, y);
  if (image_.halftone == 0) {
    const std::uint32_t threshold = image_.threshold == 0 ? 128 : image_.threshold;
    return grey / 256u >= threshold;
  }
  if (image_.halftone == 8 && grey < 0x4000) return false;
  if (image_.halftone == 8 && grey >= 0xC000) return true;
  return grey >= ScreenThreshold(image_.halftone, x, y);
}

}  // namespace pmddb832::tests
