#pragma once

#include <cstdint>
#include <optional>

#include "simulator/device/gamma_tables.h"
#include "simulator/device/scan_area.h"
#include "simulator/tones/image_filters.h"
#include "simulator/tones/screens.h"

namespace simulator {

enum class ColorMode : std::uint8_t {
  kGrey,
  kRed,  // this channel alone, delivered as grey
  kGreen,
  kBlue,
  kRedGreenBlue,  // three channels, in this order
  kBlueGreenRed,
  kPlanes,  // three channels, each one after the other within a line: red, green, blue
};

constexpr bool IsColor(ColorMode mode) {
  return mode >= ColorMode::kRedGreenBlue;
}

inline constexpr std::uint8_t kUsualThreshold = 0x80;

// What the driver wants scanned, and in which form. The area is in pixels at `dotsPerInch`.
struct ScanRequest : ScanArea {
  std::uint32_t dotsPerInch = 0;
  ColorMode colorMode = ColorMode::kGrey;
  std::uint8_t bits = 8;       // 1, 4, 8, 12, 14 or 16 a sample; 1 or 3 in planes
  bool packsNibbles = false;   // one channel of 4 bits: two pixels a byte
  bool mirrored = false;       // left and right swapped within the area
  std::int8_t sharpness = 0;   // -2 to 2
  std::int8_t brightness = 0;  // -3 to 3
  std::optional<ColorMatrix> colorMatrix;
  GammaTables gamma;
  std::uint8_t screen = kThresholdAlone;  // of 1 bit
  std::uint8_t threshold = kUsualThreshold;
};

}  // namespace simulator
