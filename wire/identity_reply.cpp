#include "wire/identity_reply.h"

#include "wire/wire_block.h"

namespace pmddb832 {
namespace {

constexpr std::size_t kResolutionsOffset = 2;

// Each resolution and both numbers of the area are the two bytes behind a marker byte.
std::uint16_t NumberAt(std::span<const std::uint8_t> data, std::size_t offset) {
  return GetLittleEndian<std::uint16_t>(data.subspan(offset).first<2>());
}

}  // namespace

std::optional<Identity> DecodeIdentity(std::span<const std::uint8_t> data) {
  if (data.size() < kIdentityFixedBytes + kIdentityResolutionBytes) return std::nullopt;
  Identity identity{};
  identity.levelLetter = static_cast<char>(data[0]);
  identity.levelDigit = static_cast<char>(data[1]);
  identity.resolutionCount = (data.size() - kIdentityFixedBytes) / kIdentityResolutionBytes;
  std::size_t marker = kResolutionsOffset;
  for (std::size_t i = 0; i < identity.resolutionCount; ++i, marker += kIdentityResolutionBytes) {
    identity.resolutions[i] = NumberAt(data, marker + 1);
  }
  identity.flatbed = {NumberAt(data, marker + 1), NumberAt(data, marker + 3)};
  return identity;
}

}  // namespace pmddb832
