#include "simulator/device/gamma_tables.h"

#include <algorithm>
#include <string_view>

namespace simulator {

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
