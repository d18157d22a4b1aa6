#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "interface/scanner_settings.h"

namespace pmscan {

// A table of tones for each channel: what the scanner delivers in the place of each sample.
struct GammaTables {
  using Table = std::array<std::uint8_t, 256>;

  Table red{};
  Table green{};
  Table blue{};

  bool AreAlike() const { return red == green && green == blue; }
};

// The bytes of ESC m, row by row: red, green and blue as they come out.
using ColorMatrix = std::array<std::uint8_t, 9>;

// How the scanner makes its samples, and what it does with the paper.
struct ImageSettings {
  std::uint8_t threshold = 0;              // of line art; 0: the scanner's own
  std::uint8_t halftone = 0;               // row of the halftone table; 0: none
  std::int32_t brightness = 0;             // -3 to 3
  std::int32_t sharpness = 0;              // -2 to 2
  std::uint16_t gamma = 100;               // times 100
  std::optional<GammaTables> gammaTables;  // in the place of gamma and brightness
  std::optional<ColorMatrix> colorMatrix;
  std::uint16_t channel = 0;  // the one that is scanned: 1 red, 2 green, 3 blue; 0: all
  std::uint16_t zoom = 100;   // percent
  bool isPreview = false;
  bool keepsPaper = false;
};

// A name on the command line, and what stands for it in the settings.
struct NamedNumber {
  std::string_view name;
  std::uint16_t number;
};

// What a scanner makes of a halftone is its own; the names tell what the simulated ones do. Row 9
// has the code of row 1.
inline constexpr std::array kHalftoneNames{
    NamedNumber{"none", 0},   NamedNumber{"fine", 1},      NamedNumber{"medium", 2},
    NamedNumber{"coarse", 3}, NamedNumber{"dots", 4},      NamedNumber{"large-dots", 5},
    NamedNumber{"lines", 6},  NamedNumber{"diagonals", 7}, NamedNumber{"mixed", 8},
};
inline constexpr std::array kGammas{
    NamedNumber{"1.0", 100}, NamedNumber{"2.2", 220}, NamedNumber{"2.5", 250},
    NamedNumber{"2.8", 280}, NamedNumber{"3.0", 300},
};
inline constexpr std::array kChannels{
    NamedNumber{"red", 1},
    NamedNumber{"green", 2},
    NamedNumber{"blue", 3},
};

std::string HalftoneNames();  // "none, fine, ..." for messages, likewise the others
std::string GammaNames();
std::string ChannelNames();

// Throws Failure(kUnsupported), saying what to do, when the scanner that the settings tell of
// cannot do what is asked, and the module would leave it out.
void RequireImageSettings(const ImageSettings& image, const pmddb832::ScannerSettings& settings);

// Writes them into the host's members of the record.
void DescribeImage(const ImageSettings& image, pmddb832::ScannerSettings& settings);

}  // namespace pmscan
