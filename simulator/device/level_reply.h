#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "simulator/page/pixel_size.h"

namespace simulator {

// Data of the reply to ESC I: the level, an "R" before each resolution, and the bed in pixels at
// the last one behind an "A". Numbers are sent with 16 bits.
std::vector<std::uint8_t> LevelReply(std::string_view level,
                                     std::span<const std::uint32_t> resolutions, PixelSize bed);

// The resolutions that scanners of both families list, up to `highest`, which is always one.
std::vector<std::uint32_t> UsualResolutions(std::uint32_t highest);

}  // namespace simulator
