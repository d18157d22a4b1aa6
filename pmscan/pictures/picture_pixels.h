#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "pmscan/scan/scan_mode.h"

namespace pmscan {

// Turns pixels of 12-bit colour, two bytes each (blue in the low nibble of the first byte; green in
// the high and red in the low nibble of the second), into pixels of three bytes: blue, green, red.
// A sample 0..15 becomes 17 times itself, so that full light stays full light. `packed` holds two
// bytes for every three of `expanded`.
void ExpandColour12(std::span<const std::uint8_t> packed, std::span<std::uint8_t> expanded);

// Scales 16-bit samples, little-endian, of which the highest `bits` were scanned: these are
// repeated below themselves, so that full light becomes 65535.
void FillRange(std::span<std::uint8_t> samples, std::uint8_t bits);

// Copies 16-bit samples with the two bytes of each swapped. Both spans have the same even size.
void SwapSampleBytes(std::span<const std::uint8_t> samples, std::span<std::uint8_t> swapped);

// The pixels of a picture, as the mode's layout has them, in the rows that the module delivered:
// `rows` themselves, or `buffer`. Deep samples were scanned with `sampleBits`.
std::span<const std::uint8_t> PicturePixels(std::span<const std::uint8_t> rows,
                                            const ScanMode& mode, std::uint8_t sampleBits,
                                            std::vector<std::uint8_t>& buffer);

}  // namespace pmscan
