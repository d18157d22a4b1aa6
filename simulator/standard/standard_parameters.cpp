#include <algorithm>
#include <array>

#include "simulator/catalog/hex.h"
#include "simulator/device/color_modes.h"
#include "simulator/device/line_format.h"
#include "simulator/device/little_endian.h"
#include "simulator/standard/standard_scanner.h"

// The standard scanner's parameters: which are possible, and the scan that they make.

namespace simulator {
namespace {

constexpr std::uint32_t kSmallestZoom = 50;  // percent
constexpr std::uint32_t kLargestZoom = 200;
constexpr std::uint32_t kLongestLine = 0xFFFF;  // bytes

constexpr std::array<std::uint8_t, 5> kDepths{1, 3, 4, 8, 12};

std::optional<ColorMode> FindColorMode(std::uint8_t code) {
  return code == 1 || code == 2 ? ColorMode::kPlanes : FindSharedColorMode(code);
}

ScanArea DecodeArea(std::span<const std::uint8_t> block) {
  return {Get16(block, 0), Get16(block, 2), Get16(block, 4), Get16(block, 6)};
}

std::string WhyNoFormat(ColorMode mode, std::uint8_t bits) {
  const std::string depth = std::to_string(bits) + " bits";
  if (mode == ColorMode::kPlanes) return bits == 1 || bits == 3 ? "" : "no planes of " + depth;
  if (bits == 3) return "samples of 3 bits come in planes only";
  return bits == 1 && IsColor(mode) ? "no colour in samples of 1 bit" : "";
}

}  // namespace

std::string StandardScanner::WhyNoColorMode(Bytes code) const {
  return FindColorMode(code[0]) ? "" : "unknown colour mode " + Hex(code);
}

std::string StandardScanner::WhyNoDepth(Bytes bits) const {
  const bool isKnown = std::count(kDepths.begin(), kDepths.end(), bits[0]) != 0;
  return isKnown ? "" : "no samples of " + std::to_string(bits[0]) + " bits";
}

std::string StandardScanner::WhyNoHalftone(Bytes code) const {
  return IsKnownScreen(code[0], LevelDigit()) ? "" : "no halftone " + Hex(code);
}

// A code that is not built in stands for the tables that were sent ahead of it.
std::string StandardScanner::WhyNoGamma(Bytes code) const {
  const bool isKnown = HasGammaTables() || GammaTables::BuiltIn(code[0]);
  return isKnown ? "" : "no gamma " + Hex(code);
}

std::string StandardScanner::WhyNoCorrection(Bytes on) const {
  if (on[0] > 1) return "colour correction is off or on, not " + std::to_string(on[0]);
  return on[0] == 1 && !ColorMatrix() ? "no colour matrix was sent" : "";
}

std::string StandardScanner::WhyNoResolution(Bytes mainAndSub) const {
  const std::uint32_t resolution = Get16(mainAndSub, 0);
  if (Get16(mainAndSub, 2) != resolution) return "the two resolutions differ";
  const std::uint32_t highest = identity_.resolutions.back() * (identity_.listsHalf ? 2 : 1);
  if (resolution >= identity_.resolutions.front() && resolution <= highest) return {};
  return std::to_string(resolution) + " dots per inch are out of range";
}

std::string StandardScanner::WhyNoZoom(Bytes mainAndSub) const {
  if (mainAndSub[0] != mainAndSub[1]) return "the two zooms differ";
  if (mainAndSub[0] >= kSmallestZoom && mainAndSub[0] <= kLargestZoom) return {};
  return "a zoom of " + std::to_string(mainAndSub[0]) + " percent is out of range";
}

// The edge of the source may run through its last pixel.
std::string StandardScanner::WhyNoArea(Bytes area) const {
  if (!Parameters('R') || !Parameters('H')) return "no resolution and zoom were accepted";
  const ScanArea scan = DecodeArea(area);
  if (scan.width % 8 != 0) {
    return "a width of " + std::to_string(scan.width) + " pixels is no multiple of 8";
  }
  if (scan.width > WidestLine()) return std::to_string(scan.width) + " pixels are too many";
  const std::uint64_t divisor = std::uint64_t{identity_.resolutions.back()} * 100;
  const auto limit = [&](std::uint32_t pixels) {
    return (std::uint64_t{pixels} * ResolutionTimesZoom() + divisor - 1) / divisor;
  };
  const PixelSize whole = AreaOfSource();
  return WhyOutside(scan, limit(whole.width), limit(whole.height));
}

std::string StandardScanner::WhyNoBlock(Bytes lines) const {
  return lines[0] == 0 ? "0 lines per block" : "";
}

std::uint32_t StandardScanner::WidestLine() const {
  if (LevelDigit() < '4') return 4096;
  return identity_.level == "B8" ? 32752 : 16128;
}

PixelSize StandardScanner::AreaOfSource() const {
  if (source.IsFeeder()) return identity_.feeder;
  return source.IsTransparencyUnit() ? identity_.transparencyUnit : identity_.flatbed;
}

void StandardScanner::Apply(char letter) {
  if (letter == 'Z') gamma_ = TakeGamma(accepted_.at(letter)[0]);
  if (letter == 'R' || letter == 'H') accepted_.erase('A');
  if (letter == 'A') startRefused_ = false;
}

std::optional<std::vector<std::uint8_t>> StandardScanner::Parameters(char letter) const {
  const auto entry = accepted_.find(letter);
  return entry == accepted_.end() ? std::nullopt : std::optional(entry->second);
}

std::uint8_t StandardScanner::ByteOf(char letter, std::uint8_t otherwise) const {
  const auto entry = accepted_.find(letter);
  return entry == accepted_.end() ? otherwise : entry->second[0];
}

std::uint32_t StandardScanner::ResolutionTimesZoom() const {
  return Get16(accepted_.at('R'), 0) * accepted_.at('H')[0];
}

std::optional<ScanRequest> StandardScanner::Request() const {
  for (const char letter : {'C', 'D', 'R', 'H', 'A'}) {
    if (!Parameters(letter)) return std::nullopt;
  }
  ScanRequest request;
  static_cast<ScanArea&>(request) = DecodeArea(accepted_.at('A'));
  request.dotsPerInch = (ResolutionTimesZoom() + 50) / 100;
  request.colorMode = *FindColorMode(accepted_.at('C')[0]);
  request.bits = accepted_.at('D')[0];
  request.packsNibbles = true;
  request.mirrored = ByteOf('K', 0) != 0;
  request.sharpness = static_cast<std::int8_t>(ByteOf('Q', 0));
  request.brightness = static_cast<std::int8_t>(ByteOf('L', 0));
  if (ByteOf('M', 0) != 0) request.colorMatrix = ColorMatrix();
  request.gamma = gamma_;
  request.screen = ByteOf('B', kThresholdAlone);
  request.threshold = ByteOf('t', kUsualThreshold);
  return request;
}

std::string StandardScanner::WhyRequestImpossible() const {
  const std::optional<ScanRequest> request = Request();
  if (!request) return "the parameters of the scan were not all accepted";
  std::string format = WhyNoFormat(request->colorMode, request->bits);
  if (!format.empty()) return format;
  const std::uint32_t bytes = LineBytes(*request);
  if (bytes <= kLongestLine) return {};
  return "a line of " + std::to_string(bytes) + " bytes does not fit a block";
}

}  // namespace simulator
