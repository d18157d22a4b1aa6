#pragma once

#include <array>
#include <string>
#include <string_view>

#include "interface/scanner_settings.h"
#include "pmscan/scan/scan_area.h"
#include "wire/document_source.h"

namespace pmscan {

// Where the page lies.
struct ScanSource {
  std::string_view name;  // on the command line
  std::string_view description;
  pmddb832::DocumentSource code;  // as the module has it
};

inline constexpr std::array kScanSources{
    ScanSource{"flatbed", "flatbed", pmddb832::kFlatbed},
    ScanSource{"feeder", "document feeder", pmddb832::kFeeder},
    ScanSource{"transparency", "transparency unit", pmddb832::kTransparencyUnit},
};

// Null when there is no source of that name.
const ScanSource* FindScanSource(std::string_view name);
std::string ScanSourceNames();  // "flatbed, feeder, transparency"

// Whether the scanner that the settings tell of has the source.
bool IsFitted(const ScanSource& source, const pmddb832::ScannerSettings& settings);

// What the settings tell of the size of a fitted source.
BedSize SizeOf(const ScanSource& source, const pmddb832::ScannerSettings& settings);

// The same. Throws Failure(kUnsupported), saying what there is, when the source is not fitted or
// the scanner did not tell its size.
BedSize RequireFitted(const ScanSource& source, const pmddb832::ScannerSettings& settings);

}  // namespace pmscan
