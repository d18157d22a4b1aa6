#pragma once

#include <cstdint>

#include "imaging/line_placement.h"

namespace pmddb832 {

// Fits the requested line into an area of `limit` pixels, where samples are whole bytes and any
// width can be sent; PlaceInGroupsOf8 does it for all other depths. Sums and differences of edges
// wrap at 32 bits. A mirrored line is kept at its right edge.
LinePlacement PlaceByteAligned(std::uint32_t left, std::uint32_t width, std::uint32_t limit,
                               bool mirror);

}  // namespace pmddb832
