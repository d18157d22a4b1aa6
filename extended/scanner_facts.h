#pragma once

#include <cstdint>

#include "wire/area_size.h"
#include "wire/deep_samples.h"
#include "wire/identity_block.h"

namespace pmddb832 {

// What an extended scanner told of itself. Areas are in pixels at the basic resolution.
struct ExtScannerFacts {
  ExtendedIdentity identity;  // of the last reply; the others are those of the open
  AreaSize flatbed;
  AreaSize option;                                 // of the feeder or of the transparency unit
  std::uint8_t highBitDepth = kUsualDeepBits;  // bits per sample sent for the deep pixel types
};

}  // namespace pmddb832
