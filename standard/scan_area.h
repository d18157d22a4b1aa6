#pragma once

#include <cstdint>

#include "imaging/line_placement.h"
#include "wire/command_level.h"
#include "wire/error_codes.h"

// The arithmetic of the scan area, in pixels at the scan resolution. Numbers are unsigned with 32
// bits where nothing else is said: sums and differences of edges wrap.
namespace pmddb832 {

// Greatest zoom x resolution up to which the width of the area follows from that product itself.
std::uint32_t ProductLimit(std::uint16_t modelQuirk);

// Places the requested line into an area of `limit` pixels. Levels with `paramG` other than 1 that
// cannot keep a mirrored line at its right edge count the pixels that rounding adds as pads.
LinePlacement PlaceLine(std::uint32_t left, std::uint32_t width, std::uint32_t limit,
                        const LevelTraits& level, bool mirror, std::uint8_t paramG);

// Why an area is not sent, or kNoError: kOriginBeyondLimits or kAreaBeyondLimits at levels with
// large areas, kEmptyLine at every level for a placed line without pixels.
ErrorCode AreaError(const LevelTraits& level, std::uint32_t left, std::uint32_t top,
                    std::uint32_t width, std::uint32_t height);

struct ClippedWidth {
  std::uint32_t width;
  bool tooLarge;  // the width, or the bits of a line, are beyond what the level allows
};

// Of the `width` pixels, with `bitDepth` bits a sample, those that are sent.
ClippedWidth ClipWidth(const LevelTraits& level, std::uint8_t bitDepth, std::uint32_t width);

// Lines of an area of `hundredths` of an inch at `resolution`: computed in signed 32-bit numbers.
std::uint32_t LinesOfArea(std::uint32_t hundredths, std::uint16_t resolution);

}  // namespace pmddb832
