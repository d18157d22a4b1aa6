#pragma once

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
inline constexpr std::size_t kMostResolutions =
    (sizeof(ReplyBuffer) - kIdentityFixedBytes) / kIdentityResolutionBytes;

// What a scanner says of itself. Resolutions are in dots per inch, in the order in which they were
// reported: the first is taken as the smallest, the last as the greatest.
struct Identity {
  char levelLetter;
  char levelDigit;
  std::size_t resolutionCount;  // 1 to kMostResolutions
  std::array<std::uint16_t, kMostResolutions> resolutions;
  AreaSize flatbed;  // pixels at the last resolution

  std::uint16_t FirstResolution() const { return resolutions[0]; }
  std::uint16_t LastResolution() const { return resolutions[resolutionCount - 1]; }
};

// Decodes the data bytes of the reply, at most those that a reply buffer holds. Empty when they do
// not hold one resolution at least.
std::optional<Identity> DecodeIdentity(std::span<const std::uint8_t> data);

}  // namespace pmddb832
