#pragma once

#include <cstdint>

namespace pmddb832 {

// Document sources, as in ScannerSettings::docFeedOption and in the option queries.
enum DocumentSource : std::uint32_t { kFeeder = 0, kTransparencyUnit = 1, kFlatbed = 2 };

}  // namespace pmddb832
