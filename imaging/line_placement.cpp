#include "imaging/line_placement.h"

#include <algorithm>

namespace pmddb832 {
namespace {

constexpr std::uint16_t Low16(std::uint32_t pixels) {
  return static_cast<std::uint16_t>(pixels);
}

LinePlacement PlaceFromRight(std::uint32_t left, std::uint32_t width, std::uint32_t limit) {
  const std::uint32_t right = std::min(left + width, limit);
  const std::uint32_t available = right - left;
  if (static_cast<std::int32_t>(right - RoundUpTo8(available)) < 0) {
    const std::uint32_t sent = RoundDownTo8(available);
    return {right - sent, sent, Low16(right - sent - left)};
  }
  const std::uint32_t sent = RoundUpTo8(available);
  return {right - sent, sent, 0};
}

LinePlacement PlaceFromLeft(std::uint32_t left, std::uint32_t width, std::uint32_t limit) {
  const std::uint32_t wanted = RoundUpTo8(width);
  if (left + wanted <= limit) return {left, wanted, 0};
  const std::uint32_t sent = RoundDownTo8(limit - left);
  return {left, sent, Low16(width - sent)};
}

}  // namespace

LinePlacement PlaceInGroupsOf8(std::uint32_t left, std::uint32_t width, std::uint32_t limit,
                               bool fromRight) {
  return fromRight ? PlaceFromRight(left, width, limit) : PlaceFromLeft(left, width, limit);
}

LinePlacement PlaceByteAligned(std::uint32_t left, std::uint32_t width, std::uint32_t limit,
                               bool fromRight) {
  if (left + width <= limit) return {left, width, 0};
  if (fromRight) return {limit - width, width, 0};
  return {left, limit - left, Low16(width + left - limit)};
}

}  // namespace pmddb832
