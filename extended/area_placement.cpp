#include "extended/area_placement.h"

namespace pmddb832 {

LinePlacement PlaceByteAligned(std::uint32_t left, std::uint32_t width, std::uint32_t limit,
                               bool mirror) {
  if (left + width <= limit) return {left, width, 0};
  if (mirror) return {limit - width, width, 0};
  return {left, limit - left, static_cast<std::uint16_t>(width + left - limit)};
}

}  // namespace pmddb832
