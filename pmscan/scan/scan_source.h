#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "interface/scanner_settings.h"
#include "pmscan/scan/scan_area.h"

namespace pmscan {

// Where the page lies. `option` is the number that ScannerSettings::docFeedOption and
// PMGetOptionStatus use.
struct ScanSource {
  std::string_view name;  // on the command line
  std::string_view description;
  std::uint32_t option;
};

inline constexpr std::uint32_t kFeederOption = 0;
inline constexpr std::uint32_t kFlatbedOption = 2;

inline constexpr std::array kScanSources{
    ScanSource{"flatbed", "flatbed", kFlatbedOption},
    ScanSource{"feeder", "document feeder", kFeederOption},
    ScanSource{"transparency", "transparency unit", 1},
};

// Null when there is no source of that name.
const ScanSource* FindScanSource(std::string_view name);
std::string ScanSourceNames();  // "flatbed, feeder, transparency"

// Whether the scanner that the settings tell of has the source.
bool IsFitted(const ScanSource& source, const pmddb832::ScannerSettings& settings);

// Throws Failure(kUnsupported), saying what there is, when the source is not fitted or the scanner
// did not tell its size.
BedSize RequireFitted(const ScanSource& source, const pmddb832::ScannerSettings& settings);

}  // namespace pmscan
