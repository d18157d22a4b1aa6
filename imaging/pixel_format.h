#pragma once

#include <cstdint>

namespace pmddb832 {

// Pixel types that the host asks for with ScannerSettings::pixelType.
enum PixelType : std::uint32_t {
  kLineArt = 0,
  kGrey16Levels = 1,  // standard set only
  kGrey = 2,
  kColour8 = 3,  // standard set only
  kPalette = 4,  // standard set only
  kTrueColour = 5,
  kColour12 = 6,
  kDeepColour = 7,
  kDeepGrey = 8,
};

constexpr bool IsDeep(std::uint32_t pixelType) {
  return pixelType == kDeepColour || pixelType == kDeepGrey;
}

constexpr bool IsStandardSetOnly(std::uint32_t pixelType) {
  return pixelType == kGrey16Levels || pixelType == kColour8 || pixelType == kPalette;
}

// Colour mode of a single-channel scan of ScannerSettings::dropoutChannel: 0 for a channel other
// than 1, 2 and 3.
constexpr std::uint8_t SingleChannelMode(std::uint16_t dropoutChannel) {
  if (dropoutChannel < 1 || dropoutChannel > 3) return 0;
  return static_cast<std::uint8_t>(dropoutChannel << 4);
}

// What a pixel type means on the wire and in the host's line.
struct PixelFormat {
  std::uint8_t bitsPerSample;
  std::uint8_t colorMode;
  std::uint32_t pixelsPerUnit;  // pixels per storage unit of a raw line
  std::uint32_t bytesPerUnit;   // bytes per storage unit
};

// Row of `pixelType`; null for a type that is not listed. In preview mode the deep types have
// 8-bit samples.
const PixelFormat* FindPixelFormat(std::uint32_t pixelType, bool preview);

}  // namespace pmddb832
