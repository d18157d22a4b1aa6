#pragma once

#include <cstdint>
#include <memory>

#include "interface/scanner_settings.h"
#include "wire/command_level.h"

// What both command sets do when they identify a scanner.
namespace pmddb832 {

// The numbers 1 to 8; null when there is no memory.
std::unique_ptr<std::uint16_t[]> MakeIndexTable();

// Stores the group of the level, and a range that is the same for every scanner.
void StoreLevelGroupAndRange(ScannerSettings& settings, const LevelTraits& level);

}  // namespace pmddb832
