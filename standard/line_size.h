#pragma once

#include <cstdint>

#include "imaging/pixel_format.h"

// Sizes of a line of `width` pixels, in bytes; unsigned 32-bit throughout, wrapping.
namespace pmddb832 {

// One row of the host: a multiple of 4, except for 4-bit pixels in output format 1.
std::uint32_t HostLineBytes(std::uint32_t width, const PixelFormat& format,
                            std::uint32_t outputFormat);

// Room that a raw line may need: whole groups of 8 storage units.
std::uint32_t RawLineRoom(std::uint32_t width, const PixelFormat& format);

// How many such rooms a raw line takes at most, 1 or 2: the palette's three planes have half a byte
// a pixel each, and scanners send the samples of the deep types in two bytes in preview mode too.
std::uint32_t RawLineRooms(std::uint32_t pixelType, const PixelFormat& format);

// Whether a host line of that size and what the scanner adds to it fit one transfer; 12-bit colour
// has a limit of its own instead.
bool FitsOneTransfer(std::uint32_t lineBytes, std::uint32_t pixelType, const PixelFormat& format);

}  // namespace pmddb832
