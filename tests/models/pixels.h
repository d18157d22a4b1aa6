#pragma once

#include <cstdint>
#include <span>

#include "tests/models/record.h"
#include "tests/models/wire.h"

namespace pmddb832::models {

// A raw line as it was received, and what is to be made of it.
struct RawLine {
  std::span<const std::uint8_t> bytes;  // from its begin to the end of all that was received
  std::uint32_t count;                  // pixels of the host's line; for line art, bytes
  std::int16_t pad;                     // of these, how many at the end the scanner does not send
  std::size_t planeBytes;               // of each of the palette's three planes
  bool swaps;                           // the host wants the channels in the other order
};

// Writes the host's line of a pixel type, pads and all. Types 1 and 3 have none. Free choice: where
// not all was received, or the line has no room for all, it is white to its end.
void MakeHostLine(std::uint32_t pixelType, const RawLine& line, const Record& settings,
                  std::span<std::uint8_t> row);

}  // namespace pmddb832::models
