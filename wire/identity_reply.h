#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "wire/area_size.h"
#include "wire/wire_block.h"

namespace pmddb832 {

// Data of the reply to ESC "I" besides the resolutions and their markers.
inline constexpr std::size_t kIdentityFixedBytes = 7;
inline constexpr std::size_t kIdentityResolutionBytes = 3;
inline constexpr std::size_t kFirstResolutionOffset = 2;
inline constexpr std::size_t kMostResolutions =
    (sizeof(ReplyBuffer) - kIdentityFixedBytes) / kIdentityResolutionBytes;

// What a scanner says of itself. Resolutions are in dots per inch, in the order in which they were
// reported: the first is taken as the smallest, the last as the greatest.
struct StandardIdentity {
  char levelLetter;
  char levelDigit;
  std::size_t resolutionCount;  // 1 to kMostResolutions
  std::array<std::uint16_t, kMostResolutions> resolutions;
  AreaSize flatbed;  // pixels at the last resolution

  constexpr std::uint16_t FirstResolution() const { return resolutions[0]; }
  constexpr std::uint16_t LastResolution() const { return resolutions[resolutionCount - 1]; }
};

// Decodes the data bytes of the reply, of which only those count that a reply buffer holds. Empty
// when they do not hold one resolution at least. Each resolution and both numbers of the area are
// the two bytes behind a marker byte.
constexpr std::optional<StandardIdentity> DecodeIdentity(std::span<const std::uint8_t> data) {
  data = data.first(std::min(data.size(), sizeof(ReplyBuffer)));
  if (data.size() < kIdentityFixedBytes + kIdentityResolutionBytes) return std::nullopt;
  const auto numberAt = [data](std::size_t offset) {
    return GetLittleEndian<std::uint16_t>(data.subspan(offset).first<2>());
  };
  StandardIdentity identity{};
  identity.levelLetter = static_cast<char>(data[0]);
  identity.levelDigit = static_cast<char>(data[1]);
  identity.resolutionCount = (data.size() - kIdentityFixedBytes) / kIdentityResolutionBytes;
  std::size_t marker = kFirstResolutionOffset;
  for (std::size_t i = 0; i < identity.resolutionCount; ++i, marker += kIdentityResolutionBytes) {
    identity.resolutions[i] = numberAt(marker + 1);
  }
  identity.flatbed = {numberAt(marker + 1), numberAt(marker + 3)};
  return identity;
}

}  // namespace pmddb832
