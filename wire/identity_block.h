#pragma once

#include "wire/area_size.h"
#include "wire/named_field.h"
#include "wire/wire_block.h"

namespace pmddb832 {

// Reply to FS "I". Areas are in pixels at the basic resolution.
using IdentityBlock = std::array<std::uint8_t, 80>;

namespace identity {

inline constexpr Field<std::uint8_t, 0> kLevelLetter;
inline constexpr Field<std::uint8_t, 1> kLevelDigit;
inline constexpr Field<std::uint32_t, 4> kBasicResolution;       // dots per inch
inline constexpr Field<std::uint16_t, 8> kMinimumResolutionLow;  // half the minimum
inline constexpr Field<std::uint32_t, 12> kMaximumResolution;    // twice the maximum
inline constexpr Field<std::uint32_t, 20> kFlatbedWidth;
inline constexpr Field<std::uint32_t, 24> kFlatbedHeight;
inline constexpr Field<std::uint32_t, 28> kFeederWidth;
inline constexpr Field<std::uint32_t, 32> kFeederHeight;
inline constexpr Field<std::uint32_t, 36> kTransparencyWidth;
inline constexpr Field<std::uint32_t, 40> kTransparencyHeight;
inline constexpr Field<std::uint8_t, 44> kFeederFlags;
inline constexpr std::size_t kProductNameOffset = 46;
inline constexpr std::size_t kProductNameBytes = 16;

inline constexpr std::uint8_t kFeederVariant = 0x20;
inline constexpr std::uint8_t kSecondFeederCapability = 0x10;
inline constexpr std::uint8_t kThirdFeederCapability = 0x08;

inline constexpr std::array kFeederFlagNames{
    ValueName{kFeederVariant, "feeder variant"},
    ValueName{kSecondFeederCapability, "second capability"},
    ValueName{kThirdFeederCapability, "third capability"},
};

inline constexpr std::array kFields{
    NamedText("command level", decltype(kLevelLetter)::kOffset, 2),
    Named("basic resolution", kBasicResolution, "dpi"),
    Named("minimum resolution, halved", kMinimumResolutionLow, "dpi"),
    Named("maximum resolution, doubled", kMaximumResolution, "dpi"),
    Named("flatbed width", kFlatbedWidth, "pixels"),
    Named("flatbed height", kFlatbedHeight, "pixels"),
    Named("feeder width", kFeederWidth, "pixels"),
    Named("feeder height", kFeederHeight, "pixels"),
    Named("transparency unit width", kTransparencyWidth, "pixels"),
    Named("transparency unit height", kTransparencyHeight, "pixels"),
    NamedFlags("feeder capabilities", kFeederFlags, kFeederFlagNames),
    NamedText("product name", kProductNameOffset, kProductNameBytes),
};

}  // namespace identity

// What the block says.
struct ExtendedIdentity {
  char levelLetter = '\0';
  char levelDigit = '\0';
  std::uint32_t basicResolution = 0;    // dots per inch; 0 until a block was read
  std::uint32_t maximumResolution = 0;  // twice the maximum
  std::uint16_t minimumResolution = 0;  // half the minimum
  AreaSize flatbed;
  AreaSize feeder;
  AreaSize transparencyUnit;
  std::uint8_t feederFlags = 0;
};

constexpr ExtendedIdentity DecodeIdentity(const IdentityBlock& block) {
  return {static_cast<char>(Get(block, identity::kLevelLetter)),
          static_cast<char>(Get(block, identity::kLevelDigit)),
          Get(block, identity::kBasicResolution),
          Get(block, identity::kMaximumResolution),
          Get(block, identity::kMinimumResolutionLow),
          {Get(block, identity::kFlatbedWidth), Get(block, identity::kFlatbedHeight)},
          {Get(block, identity::kFeederWidth), Get(block, identity::kFeederHeight)},
          {Get(block, identity::kTransparencyWidth), Get(block, identity::kTransparencyHeight)},
          Get(block, identity::kFeederFlags)};
}

constexpr std::span<const std::uint8_t> ProductName(const IdentityBlock& block) {
  return std::span{block}.subspan<identity::kProductNameOffset, identity::kProductNameBytes>();
}

}  // namespace pmddb832
