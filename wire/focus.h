#pragma once

#include <cstdint>

namespace pmddb832 {

// Focus rules that both command sets share. On the wire a position is offset by 0x40.

inline constexpr std::uint8_t kFocusOffset = 0x40;
inline constexpr std::uint8_t kFocusAutomatic = 0xFF;  // asks for automatic focus
inline constexpr std::uint8_t kFocusUnknown = 0xFF;    // the scanner did not tell a position
inline constexpr std::uint32_t kFocusMilliseconds = 20000;

constexpr std::uint8_t WireFocusPosition(std::uint8_t hostPosition) {
  return static_cast<std::uint8_t>(hostPosition + kFocusOffset);
}

// Position for the host; 156 stands for an unknown one, deliberately.
constexpr std::uint8_t HostFocusPosition(std::uint8_t wirePosition) {
  if (wirePosition == kFocusUnknown) return 156;
  return static_cast<std::uint8_t>(wirePosition - kFocusOffset);
}

}  // namespace pmddb832
