#include "standard/scan_area.h"

#include <algorithm>

namespace pmddb832 {
namespace {

// of large areas
constexpr std::uint32_t kFarthestOrigin = 65535;
constexpr std::uint32_t kWidestArea = 32752;
constexpr std::uint32_t kHighestArea = 65535;

constexpr std::uint32_t kMostLineBits = 256000;  // of all others

}  // namespace

std::uint32_t ProductLimit(std::uint16_t modelQuirk) {
  switch (modelQuirk) {
    case 2:
      return 60000;
    case 3:
    case 4:
      return 160000;
    default:
      return 80000;
  }
}

LinePlacement PlaceLine(std::uint32_t left, std::uint32_t width, std::uint32_t limit,
                        const LevelTraits& level, bool mirror, std::uint8_t paramG) {
  const bool fromRight = mirror && level.mirror;
  LinePlacement placed = PlaceInGroupsOf8(left, width, limit, fromRight);
  const bool fits = left + RoundUpTo8(width) <= limit;
  if (mirror && !fromRight && fits && paramG != 1) {
    placed.padPixels = static_cast<std::uint16_t>(placed.width - width);
  }
  return placed;
}

ErrorCode AreaError(const LevelTraits& level, std::uint32_t left, std::uint32_t top,
                    std::uint32_t width, std::uint32_t height) {
  if (level.largeAreas) {
    if (left > kFarthestOrigin || top > kFarthestOrigin) return kOriginBeyondLimits;
    if (width > kWidestArea || height > kHighestArea) return kAreaBeyondLimits;
  }
  return width == 0 ? kEmptyLine : kNoError;
}

ClippedWidth ClipWidth(const LevelTraits& level, std::uint8_t bitDepth, std::uint32_t width) {
  if (level.largeAreas) return {width, false};
  const std::uint32_t clipped = std::min(width, level.widestLine);
  return {clipped, clipped < width || RoundDownTo8(bitDepth * clipped) > kMostLineBits};
}

std::uint32_t LinesOfArea(std::uint32_t hundredths, std::uint16_t resolution) {
  const auto product = static_cast<std::int32_t>(hundredths * resolution);
  return static_cast<std::uint32_t>(product / 100);
}

}  // namespace pmddb832
