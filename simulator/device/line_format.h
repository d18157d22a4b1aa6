#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "simulator/device/scan_request.h"
#include "simulator/page/picture.h"

namespace simulator {

// The form of one scanned line on the wire:
//   1 bit        8 pixels a byte, the leftmost in the high bit, by threshold or screen. 1 is white:
//                a host's bitmap shows it so, and the driver pads lines with FF where it means
//                white.
//   4 bits       two pixels in every three bytes, one channel a byte, the first pixel in the high
//                nibbles; the packed samples first, then zeros up to 2 bytes a pixel. One-channel
//                modes fill all three channels with theirs, or pack two pixels into a byte.
//   8 bits       a byte a sample.
//   12 to 16     a sample is 2 bytes, little-endian, its bits at the high end.
//   planes       a line of each channel, one behind the other: 1 bit as above, or 3 bits, two
//                pixels a byte, the first in bits 7 to 5 and the second in bits 3 to 1.
// A sample of fewer bits is the high bits of the scanned 16. Grey is 0.299 red + 0.587 green +
// 0.114 blue. In this order: sharpness, colour matrix, gamma tables of the channels, the mix of
// grey, the gamma table of all, brightness, threshold or screen, and left and right swapped.

// Bytes of one line.
std::uint32_t LineBytes(const ScanRequest& request);

// Appends line `index` of the area made from `rgb`, three samples for each pixel of the request's
// width, which are sharpened already.
void AppendLine(const ScanRequest& request, std::span<const std::uint16_t> rgb,
                std::vector<std::uint8_t>& target, std::uint32_t index = 0);

// The whole area as the scanner delivers it, line after line, without blocks and status bytes. It
// samples a pixel at a time by ScannedPixel: slow, and made to check the scanner with.
std::vector<std::uint8_t> ScannedArea(const Picture& picture, const ScanRequest& request);

}  // namespace simulator
