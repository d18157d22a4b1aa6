#pragma once

#include <cstdint>

#include "wire/area_size.h"
#include "wire/deep_samples.h"
#include "wire/identity_block.h"

namespace pmddb832 {

// What an extended scanner told of itself. Areas are in pixels at the basic resolution.
struct ExtScannerFacts {
  ExtendedIdentity identity;  // of the last reply
  AreaSize flatbed;           // of the open
  AreaSize option;            // of the option unit; that of a feeder is asked for anew
  std::uint8_t highBitDepth = kUsualDeepBits;  // bits per sample sent for the deep pixel types
};

}  // namespace pmddb832
