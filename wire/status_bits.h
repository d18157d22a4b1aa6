#pragma once

#include <cstdint>

#include "wire/error_codes.h"

// The status bytes that both families report, and what their bits mean to the host.
namespace pmddb832::status {

// main status
inline constexpr std::uint8_t kFatalError = 0x80;
inline constexpr std::uint8_t kWarmUp = 0x02;

// option units
inline constexpr std::uint8_t kInstalled = 0x80;
inline constexpr std::uint8_t kErrorSummary = 0x40;
inline constexpr std::uint8_t kEmpty = 0x08;  // feeder only
inline constexpr std::uint8_t kOpen = 0x04;   // feeder only
inline constexpr std::uint8_t kJammed = 0x02;

constexpr bool IsSet(std::uint8_t byte, std::uint8_t bit) {
  return (byte & bit) != 0;
}

// What keeps a scan from starting: kNoError, kScannerError or kWarmingUp.
constexpr ErrorCode StartCondition(std::uint8_t main) {
  if (IsSet(main, kFatalError)) return kScannerError;
  return IsSet(main, kWarmUp) ? kWarmingUp : kNoError;
}

// Condition of a feeder whose error summary is set: the worst comes first.
constexpr ErrorCode FeederCondition(std::uint8_t feeder) {
  if (IsSet(feeder, kJammed)) return kOptionJammed;
  if (IsSet(feeder, kOpen)) return kOptionOpen;
  return IsSet(feeder, kEmpty) ? kOptionEmpty : kNoError;
}

// Condition of a transparency unit whose error summary is set.
constexpr ErrorCode TransparencyCondition(std::uint8_t unit) {
  return IsSet(unit, kJammed) ? kOptionJammed : kNoError;
}

}  // namespace pmddb832::status
