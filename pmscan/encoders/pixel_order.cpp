#include "pmscan/encoders/pixel_order.h"

#include <utility>

namespace pmscan {

void RedFirst(PixelLayout layout, std::span<const std::uint8_t> line,
              std::vector<std::uint8_t>& target) {
  target.assign(line.begin(), line.end());
  if (layout != PixelLayout::kBgr24) return;
  for (std::size_t i = 0; i + 2 < target.size(); i += 3) std::swap(target[i], target[i + 2]);
}

void RedAndHighFirst(PixelLayout layout, std::span<const std::uint8_t> line,
                     std::vector<std::uint8_t>& target) {
  RedFirst(layout, line, target);
  if (!IsDeep(layout)) return;
  for (std::size_t i = 0; i + 1 < target.size(); i += 2) std::swap(target[i], target[i + 1]);
}

}  // namespace pmscan
