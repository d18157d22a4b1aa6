#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "capture/file/capture.h"

namespace capture {

// A transfer as a capture would hold it, without indentation, time and last line feed; of many rows
// of bytes the first ones only.
std::string TransferText(const Transfer& transfer);

// What the two writes mean, a line for each fact: commands by their names, the fields of a
// parameter block that are not the same, else the first byte that is not. `entry` is where the
// capture stands: the command of a block is the last one in front of it. `expected` is null when
// none was.
std::string ExplainWrites(const Capture& capture, std::size_t entry, const Transfer* expected,
                          std::span<const std::uint8_t> came);

}  // namespace capture
