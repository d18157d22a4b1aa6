#include "transport/identification.h"

#include <new>
#include <numeric>

namespace pmddb832 {

std::unique_ptr<std::uint16_t[]> MakeIndexTable() {
  constexpr std::size_t kEntries = 8;
  std::unique_ptr<std::uint16_t[]> table(new (std::nothrow) std::uint16_t[kEntries]{});
  if (table != nullptr) std::iota(table.get(), table.get() + kEntries, std::uint16_t{1});
  return table;
}

void StoreLevelGroupAndRange(ScannerSettings& settings, const LevelTraits& level) {
  settings.rangeEnabled = 1;
  settings.rangeMin = 50;
  settings.rangeMax = 200;
  settings.levelGroup = level.group;
}

}  // namespace pmddb832
