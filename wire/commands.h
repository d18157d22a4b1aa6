#pragma once

#include <cstdint>

// The command letters, each behind the prefix of its family.
namespace pmddb832 {

namespace esc {

inline constexpr std::uint8_t kProductName = '?';
inline constexpr std::uint8_t kReset = '@';
inline constexpr std::uint8_t kArea = 'A';
inline constexpr std::uint8_t kHalftone = 'B';
inline constexpr std::uint8_t kColorMode = 'C';
inline constexpr std::uint8_t kBitsPerSample = 'D';
inline constexpr std::uint8_t kCondition = 'F';
inline constexpr std::uint8_t kStart = 'G';
inline constexpr std::uint8_t kZoom = 'H';
inline constexpr std::uint8_t kIdentity = 'I';
inline constexpr std::uint8_t kMirror = 'K';
inline constexpr std::uint8_t kBrightness = 'L';
inline constexpr std::uint8_t kColorCorrection = 'M';
inline constexpr std::uint8_t kSharpness = 'Q';
inline constexpr std::uint8_t kResolution = 'R';
inline constexpr std::uint8_t kGammaCode = 'Z';
inline constexpr std::uint8_t kLinesPerBlock = 'd';
inline constexpr std::uint8_t kOptionUnit = 'e';
inline constexpr std::uint8_t kStatus = 'f';
inline constexpr std::uint8_t kParamG = 'g';
inline constexpr std::uint8_t kColorMatrix = 'm';
inline constexpr std::uint8_t kFocusPosition = 'p';
inline constexpr std::uint8_t kFocusFound = 'q';
inline constexpr std::uint8_t kEnhancement = 's';
inline constexpr std::uint8_t kThreshold = 't';
inline constexpr std::uint8_t kGammaTable = 'z';

}  // namespace esc

namespace fs {

inline constexpr std::uint8_t kStatus = 'F';
inline constexpr std::uint8_t kStart = 'G';
inline constexpr std::uint8_t kIdentity = 'I';
inline constexpr std::uint8_t kParameters = 'W';

}  // namespace fs
}  // namespace pmddb832
