#include "simulator/device/gamma_tables.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace simulator {
namespace {

struct BuiltInRow {
  std::uint8_t code;
  double gamma;
};
constexpr std::array kBuiltIn{BuiltInRow{0x02, 2.2}, BuiltInRow{0x20, 2.5}, BuiltInRow{0x10, 2.8},
                              BuiltInRow{0x00, 3.0}};
constexpr std::uint8_t kLinear = 0x01;

GammaTables::Table TableOf(double gamma) {
  GammaTables::Table table{};
  for (std::size_t place = 0; place < table.size(); ++place) {
    const double tone = std::pow(static_cast<double>(place) / 255, 1 / gamma);
    table[place] = static_cast<std::uint8_t>(std::lround(255 * tone));
  }
  return table;
}

}  // namespace

std::optional<GammaTables> GammaTables::BuiltIn(std::uint8_t code) {
  GammaTables tables;
  if (code == kLinear) return tables;
  for (const BuiltInRow& row : kBuiltIn) {
    if (row.code != code) continue;
    for (const char selector : {'R', 'G', 'B'}) {
      tables.Set(static_cast<std::uint8_t>(selector), TableOf(row.gamma));
    }
    return tables;
  }
  return std::nullopt;
}

bool GammaTables::Set(std::uint8_t selector, std::span<const std::uint8_t> table) {
  constexpr std::string_view kSelectors = "RGBM";
  const std::size_t index = kSelectors.find(static_cast<char>(selector));
  if (index == std::string_view::npos) return false;
  std::copy_n(table.begin(), 256, tables_[index].emplace().begin());
  return true;
}

std::uint16_t GammaTables::Apply(const std::optional<Table>& table, std::uint16_t sample) {
  if (!table) return sample;
  constexpr int kStep = 257;  // 65535 / 255
  const std::size_t place = sample / kStep;
  const int here = (*table)[place];
  const int next = (*table)[std::min<std::size_t>(place + 1, 255)];
  return static_cast<std::uint16_t>(here * kStep + (next - here) * (sample % kStep));
}

}  // namespace simulator
