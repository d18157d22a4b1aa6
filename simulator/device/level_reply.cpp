#include "simulator/device/level_reply.h"

#include "simulator/device/little_endian.h"

namespace simulator {

std::vector<std::uint8_t> LevelReply(std::string_view level,
                                     std::span<const std::uint32_t> resolutions, PixelSize bed) {
  std::vector<std::uint8_t> data(level.begin(), level.end());
  for (const std::uint32_t resolution : resolutions) {
    data.push_back('R');
    Append16(data, resolution);
  }
  data.push_back('A');
  Append16(data, bed.width);
  Append16(data, bed.height);
  return data;
}

std::vector<std::uint32_t> UsualResolutions(std::uint32_t highest) {
  std::vector<std::uint32_t> list;
  for (const std::uint32_t resolution :
       {50U, 72U, 75U, 100U, 150U, 200U, 300U, 400U, 600U, 1200U}) {
    if (resolution < highest) list.push_back(resolution);
  }
  list.push_back(highest);
  return list;
}

}  // namespace simulator
