#include "standard/scan_area.h"

#include "wire/error_codes.h"

namespace pmddb832 {
namespace {

constexpr std::uint32_t kLargeAreaLevel = 8;  // from this level on areas may be large

// from kLargeAreaLevel on
constexpr std::uint32_t kFarthestOrigin = 65535;
constexpr std::uint32_t kWidestArea = 32752;
constexpr std::uint32_t kHighestArea = 65535;

// below
constexpr std::uint32_t kWidestLine = 16128;
constexpr std::uint32_t kMostLineBits = 256000;
constexpr std::uint32_t kWidestLineOfLevel1 = 4096;

constexpr bool KeepsMirroredRightEdge(std::uint32_t level) {
  return level >= 3 && level != 5;
}

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
                        std::uint32_t level, bool mirror, std::uint8_t paramG) {
  const bool fromRight = mirror && KeepsMirroredRightEdge(level);
  LinePlacement placed = PlaceInGroupsOf8(left, width, limit, fromRight);
  const bool fits = left + RoundUpTo8(width) <= limit;
  if (mirror && !fromRight && fits && paramG != 1) {
    placed.padPixels = static_cast<std::uint16_t>(placed.width - width);
  }
  return placed;
}

std::uint32_t AreaError(std::uint32_t level, std::uint32_t left, std::uint32_t top,
                        std::uint32_t width, std::uint32_t height) {
  if (level >= kLargeAreaLevel) {
    if (left > kFarthestOrigin || top > kFarthestOrigin) return kOriginBeyondLimits;
    if (width > kWidestArea || height > kHighestArea) return kAreaBeyondLimits;
  }
  return width == 0 ? kEmptyLine : kNoError;
}

ClippedWidth ClipWidth(std::uint32_t level, std::uint8_t bitDepth, std::uint32_t width) {
  if (level >= kLargeAreaLevel) return {width, false};
  ClippedWidth clipped{width, false};
  if (clipped.width > kWidestLine) clipped = {kWidestLine, true};
  if (RoundDownTo8(bitDepth * clipped.width) > kMostLineBits) clipped.tooLarge = true;
  if (level == 1 && clipped.width > kWidestLineOfLevel1) clipped = {kWidestLineOfLevel1, true};
  return clipped;
}

std::uint32_t LinesOfArea(std::uint32_t hundredths, std::uint16_t resolution) {
  const auto product = static_cast<std::int32_t>(hundredths * resolution);
  return static_cast<std::uint32_t>(product / 100);
}

}  // namespace pmddb832
