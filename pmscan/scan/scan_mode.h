#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace pmscan {

// How the pixels of a picture lie in memory. Samples of 16 bits are little-endian.
enum class PixelLayout {
  kBlackWhite,  // 8 pixels a byte, the leftmost in the highest bit; 1 is white
  kGrey8,
  kGrey16,
  kPalette,  // a byte a pixel: 36 red + 6 green + blue, each of 6 levels
  kBgr24,
  kRgb48,
};

constexpr bool IsDeep(PixelLayout layout) {
  return layout == PixelLayout::kGrey16 || layout == PixelLayout::kRgb48;
}

// The first argument of PMInitAcquire. Both values make the module deliver the lines of a band from
// the top down; they differ in the order of the colours.
inline constexpr std::uint32_t kRedFirst = 1;
inline constexpr std::uint32_t kBlueFirst = 5;

struct ScanMode {
  std::string_view name;         // on the command line
  std::string_view description;  // for people
  std::uint32_t pixelType;       // ScannerSettings::pixelType
  std::uint32_t outputFormat;    // kRedFirst or kBlueFirst
  std::uint32_t bitsPerPixel;    // of the lines that the module delivers
  bool isPacked;       // the lines hold 12-bit colour: ExpandColour12 makes kBgr24 of them
  PixelLayout layout;  // of the picture that is written
};

// clang-format off
inline constexpr std::array kScanModes{
    ScanMode{"lineart", "line art, 1 bit", 0, kBlueFirst, 1, false, PixelLayout::kBlackWhite},
    ScanMode{"grey", "grey, 8 bits", 2, kBlueFirst, 8, false, PixelLayout::kGrey8},
    ScanMode{"colour", "colour, 24 bits", 5, kBlueFirst, 24, false, PixelLayout::kBgr24},
    ScanMode{"colour12", "colour, 12 bits", 6, kBlueFirst, 16, true, PixelLayout::kBgr24},
    ScanMode{"palette", "colour, 216 fixed ones", 4, kBlueFirst, 8, false, PixelLayout::kPalette},
    ScanMode{"deep-grey", "grey, 16 bits", 8, kBlueFirst, 16, false, PixelLayout::kGrey16},
    ScanMode{"deep-colour", "colour, 48 bits", 7, kRedFirst, 48, false, PixelLayout::kRgb48},
};
// clang-format on

// In any case, and also where grey is called gray or colour color. Null when there is no mode of
// that name.
const ScanMode* FindScanMode(std::string_view name);

// "lineart, grey, ..." for messages.
std::string ScanModeNames();

}  // namespace pmscan
