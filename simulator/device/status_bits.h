#pragma once

#include <cstdint>

// The status bytes that both families report.
namespace simulator::status_bits {

// Main.
inline constexpr std::uint8_t kFatalError = 0x80;
inline constexpr std::uint8_t kNotReady = 0x40;
inline constexpr std::uint8_t kWarmingUp = 0x02;

// Feeder and transparency unit.
inline constexpr std::uint8_t kInstalled = 0x80;
inline constexpr std::uint8_t kUnitError = 0x40;  // one of the conditions holds
inline constexpr std::uint8_t kPaperOut = 0x08;
inline constexpr std::uint8_t kCoverOpen = 0x04;
inline constexpr std::uint8_t kJam = 0x02;  // also the transparency unit's error

// Feeder flags, where each family tells them.
inline constexpr std::uint8_t kFeederVariant = 0x20;  // takes option values above 1
inline constexpr std::uint8_t kSecondFeederCapability = 0x10;

}  // namespace simulator::status_bits
