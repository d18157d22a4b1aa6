#pragma once

#include <array>
#include <cstdint>

// The command level of a scanner: a letter and a digit in its identity, a code in the settings
// record, and what follows from them.
namespace pmddb832 {

// What scanners of a level know, and what a host has to heed there.
struct LevelTraits {
  std::uint32_t code;        // ScannerSettings::commandLevel; 0 is not supported
  std::uint16_t group;       // ScannerSettings::levelGroup
  std::uint32_t widestLine;  // pixels to which a wider line is clipped in the standard set

  bool status;               // option units, and the status that tells of them; ESC Q and ESC g
  std::uint8_t gammaTables;  // ESC z: none, one for all channels, or one for each of three
  bool colorCorrection;      // ESC M
  bool colorMatrix;          // ESC m
  bool enhancement;          // ESC s
  bool halftoneOverride;     // halftone code 3
  bool mirror;               // ESC K; the line of a mirrored area keeps its right edge
  bool threshold;            // ESC t
  bool largeAreas;           // areas up to 16 bits, and refused beyond; else clipped
  bool focus;                // ESC p and ESC q
  bool stopsAtError;         // an upload with a pending error ends behind the option unit
  bool alwaysEjects;         // the page is ejected whatever the source was
};

inline constexpr std::uint32_t kUnclipped = 0xFFFFFFFF;

// There is no code 5, deliberately.
// NOLINTBEGIN(modernize-use-bool-literals): columns of words would hide what a table shows.
// clang-format off
inline constexpr std::array kLevels{
    //                          f  z  M  m  s  B3 K  t  A  p  !  FF
    LevelTraits{0, 6, 16128,      0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0},
    LevelTraits{1, 4, 4096,       0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0},
    LevelTraits{2, 5, 16128,      1, 3, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0},
    LevelTraits{3, 5, 16128,      1, 3, 1, 1, 0, 1, 1, 0, 0, 0, 0, 0},
    LevelTraits{4, 5, 16128,      1, 1, 0, 0, 1, 1, 1, 0, 0, 0, 0, 1},
    LevelTraits{6, 6, 16128,      1, 3, 1, 1, 1, 1, 1, 0, 0, 0, 1, 0},
    LevelTraits{7, 6, 16128,      1, 3, 1, 1, 1, 1, 1, 0, 0, 0, 1, 0},
    LevelTraits{8, 6, kUnclipped, 1, 3, 1, 1, 1, 1, 1, 1, 1, 1, 1, 0},
};
// clang-format on
// NOLINTEND(modernize-use-bool-literals)

inline constexpr const LevelTraits& kUnsupportedLevelTraits = kLevels[0];

// The row of a code; that of 0 for a code that no scanner has.
constexpr const LevelTraits& TraitsOf(std::uint32_t code) {
  for (const LevelTraits& level : kLevels) {
    if (level.code == code) return level;
  }
  return kUnsupportedLevelTraits;
}

constexpr bool IsSupported(const LevelTraits& level) {
  return level.code != 0;
}

// Code of letter "B" with a digit; 0 for a digit that is not listed.
constexpr std::uint32_t LevelCodeOfB(char digit) {
  constexpr std::array<std::uint8_t, 6> kCodeOfDigit{1, 2, 3, 6, 7, 8};  // from "3" on
  return digit < '3' || digit > '8' ? 0 : kCodeOfDigit[static_cast<std::size_t>(digit - '3')];
}

// Codes of what the extended and the standard identity say; 0 is not supported.
constexpr std::uint32_t ExtendedLevelCode(char letter, char digit) {
  return letter == 'B' ? LevelCodeOfB(digit) : 0;
}

constexpr std::uint32_t StandardLevelCode(char letter, char digit) {
  constexpr std::uint32_t kOtherB = 6;
  constexpr std::uint32_t kA5 = 4;
  if (letter == 'A') return digit == '5' ? kA5 : 0;
  if (letter != 'B') return 0;
  const std::uint32_t code = LevelCodeOfB(digit);
  return code == 0 ? kOtherB : code;
}

// Of the digit alone, as a signed character.
constexpr bool IsDigitOfOldScanner(char digit) {
  return static_cast<std::int8_t>(digit) <= '2';
}

// Blocks have several lines (ESC d); else one each.
constexpr bool SendsLinesInBlocks(char digit) {
  return static_cast<std::int8_t>(digit) >= '4';
}

}  // namespace pmddb832
