#include <algorithm>

#include "extended/area_placement.h"
#include "extended/ext_scan_cmd.h"
#include "imaging/units.h"
#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "wire/error_codes.h"

namespace pmddb832 {
namespace {

constexpr std::uint32_t kMostLinesPerBlock = 254;

std::uint8_t LowByte(std::int32_t value) {
  return static_cast<std::uint8_t>(value);
}

bool IsByteAligned(std::uint8_t bitsPerSample) {
  return bitsPerSample >= 5 && bitsPerSample <= 12;
}

}  // namespace

std::uint32_t ExtScanCmd::SetupScanParameter() {
  const TraceScope trace{"Extcmd::SetupScanParameter"};
  if (Get(*identity_, identity::kBasicResolution) == 0) return Fail(kUnreadable);
  PutOptionUnit();
  PutColours();
  PutHalftoneAndOverride();
  if (SendGamma() == 0 || SendColourCorrection() == 0) return 0;
  const ScannerSettings& settings = *currentSettings;
  Put(*parameters_, parameter::kMirror, settings.mirrorImage != 0 ? 1 : 0);
  Put(*parameters_, parameter::kSharpness, LowByte(settings.sharpness / 500));
  Put(*parameters_, parameter::kParamG, settings.paramG);
  if (PutArea() == 0) return 0;
  return SendParameterBlock();
}

void ExtScanCmd::PutOptionUnit() {
  const auto value = static_cast<std::uint8_t>(OptionUnitValue(currentSettings->scanSource));
  Put(*parameters_, parameter::kOptionUnit, value);
  Put(*parameters_, parameter::kOptionParam, value != 0 ? currentSettings->optionParam : 0);
}

void ExtScanCmd::PutColours() {
  const ScannerSettings& settings = *currentSettings;
  Put(*parameters_, parameter::kColorMode,
      settings.monoScan != 0 ? SingleChannelMode(settings.dropoutChannel) : format_.colorMode);
  Put(*parameters_, parameter::kBitsPerSample,
      IsDeep(scanPixelType_) ? highBitDepth_ : format_.bitsPerSample);
}

void ExtScanCmd::PutHalftoneAndOverride() {
  const ScannerSettings& settings = *currentSettings;
  const bool enhance = settings.optionS != 0;
  if (settings.halftoneOverride != 0) {
    Put(*parameters_, parameter::kHalftone, 3);
    Put(*parameters_, parameter::kEnhancement, enhance ? 2 : 0);
  } else {
    Put(*parameters_, parameter::kHalftone, HalftoneCode(settings.halftoneIndex));
    Put(*parameters_, parameter::kEnhancement, enhance ? 1 : 0);
  }
  if (settings.thresholdT != kThresholdUnset) {
    Put(*parameters_, parameter::kModeOverride, LowByte(settings.thresholdT));
  } else if (settings.customGammaCode == 4 && enhance) {
    Put(*parameters_, parameter::kModeOverride, 'n');
  }
}

std::uint32_t ExtScanCmd::SendGamma() {
  const ScannerSettings& settings = *currentSettings;
  if (settings.customGamma == 0) {
    Put(*parameters_, parameter::kGammaCode, SetGamma(settings.gamma));
    Put(*parameters_, parameter::kBrightness, LowByte(settings.brightness / 333));
    return 1;
  }
  if (settings.monoScan != 0) {
    if (SendCorrectionData('z', 'M', settings.gammaTableR) == 0) return 0;
  } else if (SendCorrectionData('z', 'R', settings.gammaTableR) == 0 ||
             SendCorrectionData('z', 'G', settings.gammaTableG) == 0 ||
             SendCorrectionData('z', 'B', settings.gammaTableB) == 0) {
    return 0;
  }
  Put(*parameters_, parameter::kGammaCode, settings.customGammaCode);
  return 1;
}

std::uint32_t ExtScanCmd::SendColourCorrection() {
  const ScannerSettings& settings = *currentSettings;
  if (settings.monoScan != 0) return 1;
  const bool correct = settings.colorCorrection != 0;
  if (correct && SendCorrectionData('m', kNoPrefix, settings.colorMatrix) == 0) return 0;
  Put(*parameters_, parameter::kColorCorrection, correct ? 1 : 0);
  return 1;
}

std::uint32_t ExtScanCmd::PutArea() {
  ScannerSettings& settings = *currentSettings;
  const std::int32_t resolution = Scanutil::InchesToPixelsORWIA(settings.resolution, settings.zoom);
  const auto dotsPerInch = static_cast<std::uint32_t>(resolution);
  Put(*parameters_, parameter::kMainResolution, dotsPerInch);
  Put(*parameters_, parameter::kSubResolution, dotsPerInch);
  areaLeftPx_ = settings.areaLeftPx =
      static_cast<std::uint32_t>(Scanutil::InchesToPixelsORWIA(settings.originX, resolution));
  areaTopPx_ = settings.areaTopPx =
      static_cast<std::uint32_t>(Scanutil::InchesToPixelsORWIA(settings.originY, resolution));
  const AreaSize& area = settings.scanSource == 0 ? flatbed_ : option_;
  const std::uint32_t basicResolution = Get(*identity_, identity::kBasicResolution);
  const std::uint32_t widthLimit = area.width * dotsPerInch / basicResolution;
  const std::uint32_t heightLimit = area.height * dotsPerInch / basicResolution;

  const bool mirror = settings.mirrorImage != 0;
  const LinePlacement placed = IsByteAligned(Get(*parameters_, parameter::kBitsPerSample))
                                   ? PlaceByteAligned(areaLeftPx_, widthPx_, widthLimit, mirror)
                                   : PlaceInGroupsOf8(areaLeftPx_, widthPx_, widthLimit, mirror);
  padPixels_ = placed.padPixels;
  if (placed.width > kWidestLine) return Fail(kAreaBeyondLimits);
  if (placed.width == 0) return Fail(kEmptyLine);
  linesToScan_ = areaTopPx_ + heightPx_ > heightLimit ? heightLimit - areaTopPx_ : heightPx_;
  Put(*parameters_, parameter::kAreaLeft, placed.left);
  Put(*parameters_, parameter::kAreaTop, areaTopPx_);
  Put(*parameters_, parameter::kAreaWidth, placed.width);
  Put(*parameters_, parameter::kAreaHeight, linesToScan_);
  return PutLinesPerBlock(placed.width);
}

std::uint32_t ExtScanCmd::PutLinesPerBlock(std::uint32_t width) {
  rawLineBytes_ = width * format_.bytesPerUnit / format_.pixelsPerUnit;
  const std::uint32_t groupsOf8 = (width / format_.pixelsPerUnit + 7) / 8;
  const std::uint32_t lines = (kDataBufferBytes - 1) / (groupsOf8 * 8 * format_.bytesPerUnit);
  if (lines < 2) return Fail(kTooLarge);
  const std::uint32_t even = lines > kMostLinesPerBlock ? kMostLinesPerBlock : lines & ~1u;
  Put(*parameters_, parameter::kLinesPerBlock, static_cast<std::uint8_t>(even));
  return 1;
}

std::uint32_t ExtScanCmd::SendParameterBlock() {
  if (SendFSCode('W') == 0 || CheckAck() == 0) return 0;
  if (Wire().Write(*parameters_) == 0) return 0;
  return CheckAck();
}

}  // namespace pmddb832
