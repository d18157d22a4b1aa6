#pragma once

#include <cstdint>

#include "interface/scanner_settings.h"

namespace pmddb832 {

// What both command sets store at the end of an identification.
inline void StoreLevelGroupAndRange(ScannerSettings& settings, std::uint32_t commandLevel) {
  settings.rangeEnabled = 1;
  settings.rangeMin = 50;
  settings.rangeMax = 200;
  const bool middle = commandLevel >= 2 && commandLevel <= 4;
  settings.levelGroup = commandLevel == 1 ? 4 : (middle ? 5 : 6);
}

}  // namespace pmddb832
