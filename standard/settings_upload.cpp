#include "imaging/units.h"
#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "standard/scan_area.h"
#include "standard/std_scan_cmd.h"
#include "wire/error_codes.h"

// The upload of the host's settings. Whether the scanner acknowledges a command is not looked at:
// the sequence goes on, and the host sees the error code only.

namespace pmddb832 {
namespace {

constexpr std::uint8_t kPlainColorMode = 1;
constexpr std::uint8_t kColorModeWithSubstitute = 2;
constexpr std::uint8_t kHalftoneOverride = 3;

std::uint8_t LowByte(std::int32_t value) {
  return static_cast<std::uint8_t>(value);
}

std::uint16_t Low16(std::uint32_t value) {
  return static_cast<std::uint16_t>(value);
}

}  // namespace

void StdScanCmd::UpdateSettings() {
  const TraceScope trace{"Scmdnt::UpdateSettings"};
  paramState_ = 0;
  if (CheckStatus() == 0) return;
  colorModeSubstituted_ = 0;
  if (optionAvailable_ != 0) SendParam2('e', currentSettings->scanSource);
  if (commandLevel_ >= 6 && lastError_ != kNoError) return;
  SendColours();
  SendHalftone();
  SendThreshold();
  SendGamma();
  SendColourCorrection();
  SendMirrorAndFilters();
  SendResolutionAndZoom();
  SendArea();
}

// The header of the reply is taken as it is, and its data are not read.
std::uint32_t StdScanCmd::CheckStatus() {
  const TraceScope trace{"Scmdnt::CheckStatus"};
  statusByte_ = 0;
  ReplyHeader header{};
  if (SendEscCode('F') == 0 || Wire().Read(header) == 0) return 0;
  statusByte_ = Get(header, kReplyStatus);
  return 1;
}

void StdScanCmd::SendColours() {
  const ScannerSettings& settings = *currentSettings;
  std::uint8_t colorMode = format_.colorMode;
  if (settings.monoScan != 0) {
    colorMode = SingleChannelMode(settings.dropoutChannel);
  } else if (colorMode == kColorModeWithSubstitute && settings.altColorMode == 1) {
    colorMode = kPlainColorMode;
    colorModeSubstituted_ = 1;
  }
  SendParam2('C', colorMode);
  SendParam2('D', IsDeep(pixelType_) ? highBitDepth_ : format_.bitsPerSample);
}

void StdScanCmd::SendHalftone() {
  const ScannerSettings& settings = *currentSettings;
  const bool enhances = commandLevel_ == 4 || commandLevel_ >= 6;
  const bool overrides = settings.halftoneOverride != 0 && (enhances || commandLevel_ == 3);
  SendParam2('B', overrides ? kHalftoneOverride : HalftoneCode(settings.halftoneIndex));
  if (!enhances) return;
  const std::uint8_t enhancement = overrides ? 2 : 1;
  SendParam2('s', settings.optionS != 0 ? enhancement : std::uint8_t{0});
}

void StdScanCmd::SendThreshold() {
  const std::uint16_t threshold = currentSettings->thresholdT;
  if (commandLevel_ >= 8 && threshold != kThresholdUnset) SendParam2('t', LowByte(threshold));
}

void StdScanCmd::SendGamma() {
  const ScannerSettings& settings = *currentSettings;
  if (commandLevel_ > 1 && settings.customGamma != 0) {
    SendGammaTables();
    SendParam2('Z', settings.customGammaCode);
    return;
  }
  gammaCode_ = SetGamma(settings.gamma);
  SendParam2('Z', gammaCode_);
  SendParam2('L', LowByte(settings.brightness / 333));
}

void StdScanCmd::SendGammaTables() {
  const ScannerSettings& settings = *currentSettings;
  if (commandLevel_ == 4 || settings.monoScan != 0) {
    SendParam4('z', 'M', settings.gammaTableR);
    return;
  }
  SendParam4('z', 'R', settings.gammaTableR);
  SendParam4('z', 'G', settings.gammaTableG);
  SendParam4('z', 'B', settings.gammaTableB);
}

void StdScanCmd::SendColourCorrection() {
  const ScannerSettings& settings = *currentSettings;
  if (commandLevel_ == 4 || settings.monoScan != 0) return;
  const bool corrects = commandLevel_ > 1 && settings.colorCorrection != 0;
  if (corrects) SendParam4('m', kNoPrefix, settings.colorMatrix);
  SendParam2('M', corrects ? 1 : 0);
}

void StdScanCmd::SendMirrorAndFilters() {
  const ScannerSettings& settings = *currentSettings;
  if (commandLevel_ > 2) SendParam2('K', settings.mirrorImage != 0 ? 1 : 0);
  if (commandLevel_ <= 1) return;
  SendParam2('Q', LowByte(settings.sharpness / 500));
  SendParam2('g', settings.paramG);
}

void StdScanCmd::SendResolutionAndZoom() {
  const ScannerSettings& settings = *currentSettings;
  SendParamW3('R', settings.resolution, settings.resolution);
  const std::uint8_t zoom = LowByte(settings.zoom);
  SendParam3('H', zoom, zoom);
}

void StdScanCmd::SendArea() {
  const ScannerSettings& settings = *currentSettings;
  const LinePlacement line = PlaceLine(areaLeft_, areaWidth_, WidthLimit(), commandLevel_,
                                       settings.mirrorImage != 0, settings.paramG);
  padPixels_ = line.padPixels;
  if (const std::uint32_t error =
          AreaError(commandLevel_, line.left, areaTop_, line.width, areaHeight_);
      error != kNoError) {
    Fail(error);
    return;
  }
  const ClippedWidth sent = ClipWidth(commandLevel_, format_.bitsPerSample, line.width);
  sentWidth_ = sent.width;
  const std::uint32_t left = IsCentred() ? (areaWidth_ - sent.width) / 2 : line.left;
  SendParamW5('A', {Low16(left), Low16(areaTop_), Low16(sent.width), Low16(areaHeight_)});
  if (sent.tooLarge) Fail(kTooLarge);
}

// Width of the selected area in pixels at the scan resolution.
std::uint32_t StdScanCmd::WidthLimit() {
  const ScannerSettings& settings = *currentSettings;
  const std::uint32_t product = std::uint32_t{settings.zoom} * settings.resolution;
  if (product > ProductLimit(modelQuirk_)) {
    return MaximumWidth(Scanutil::CalcResolution(settings.resolution, settings.zoom));
  }
  return (SelectedArea().width * product / LastResolution() + 50) / 100;
}

std::uint32_t StdScanCmd::MaximumWidth(std::uint16_t resolution) {
  const TraceScope trace{"Scmdnt::MaximumWidth"};
  if (resolutionCount_ == 0) return 0;
  const double width = Scanutil::PixelsToInchesORWIA(SelectedArea().width, LastResolution());
  return RoundDownTo8(static_cast<std::uint32_t>(Scanutil::InchesToPixelsORWIA(width, resolution)));
}

// With a feeder, a scan of the whole length of the area at the first listed resolution is taken
// from the middle of the line.
bool StdScanCmd::IsCentred() const {
  const ScannerSettings& settings = *currentSettings;
  const std::uint32_t height =
      settings.scanSource == 0 ? settings.bedHeight : settings.optionHeight;
  return settings.docFeedOption == kFeeder && resolutionList_[0] == settings.resolution &&
         areaHeight_ == LinesOfArea(height, settings.resolution);
}

}  // namespace pmddb832
