#include "extended/parameters.h"

#include "interface/scanner_settings.h"
#include "wire/document_source.h"
#include "wire/halftone_codes.h"

namespace pmddb832 {
namespace {

std::uint8_t LowByte(std::int32_t value) {
  return static_cast<std::uint8_t>(value);
}

void PutOptionUnit(ParameterBlock& block, const ScannerSettings& settings) {
  const auto value = static_cast<std::uint8_t>(OptionUnitValue(settings, settings.scanSource));
  Put(block, parameter::kOptionUnit, value);
  Put(block, parameter::kOptionParam, value != 0 ? settings.optionParam : 0);
}

void PutHalftone(ParameterBlock& block, const ScannerSettings& settings) {
  const bool enhance = settings.optionS != 0;
  if (settings.halftoneOverride != 0) {
    Put(block, parameter::kHalftone, kHalftoneOverrideCode);
    Put(block, parameter::kEnhancement, enhance ? 2 : 0);
  } else {
    Put(block, parameter::kHalftone, HalftoneCode(settings.halftoneIndex));
    Put(block, parameter::kEnhancement, enhance ? 1 : 0);
  }
}

void PutModeOverride(ParameterBlock& block, const ScannerSettings& settings) {
  constexpr std::uint8_t kGammaCodeOfOverride = 4;
  if (settings.thresholdT != kThresholdUnset) {
    Put(block, parameter::kModeOverride, LowByte(settings.thresholdT));
  } else if (settings.customGammaCode == kGammaCodeOfOverride && settings.optionS != 0) {
    Put(block, parameter::kModeOverride, 'n');
  }
}

}  // namespace

std::uint32_t OptionUnitValue(const ScannerSettings& settings, std::uint32_t value) {
  const bool onOrOff = settings.docFeedOption == kTransparencyUnit ||
                       (settings.docFeedOption == kFeeder && settings.mainStatusBit5 == 0);
  return onOrOff && value != 0 ? 1 : value;
}

void PutOptions(ParameterBlock& block, const ScannerSettings& settings, const ScanPlan& plan,
                std::uint8_t highBitDepth) {
  PutOptionUnit(block, settings);
  Put(block, parameter::kColorMode,
      settings.monoScan != 0 ? SingleChannelMode(settings.dropoutChannel) : plan.format.colorMode);
  Put(block, parameter::kBitsPerSample,
      IsDeep(plan.pixelType) ? highBitDepth : plan.format.bitsPerSample);
  PutHalftone(block, settings);
  PutModeOverride(block, settings);
}

void PutGammaOfTables(ParameterBlock& block, const ScannerSettings& settings) {
  Put(block, parameter::kGammaCode, settings.customGammaCode);
}

void PutGammaAndBrightness(ParameterBlock& block, const ScannerSettings& settings,
                           std::uint8_t gammaCode) {
  Put(block, parameter::kGammaCode, gammaCode);
  Put(block, parameter::kBrightness, LowByte(settings.brightness / 333));
}

void PutFilters(ParameterBlock& block, const ScannerSettings& settings) {
  Put(block, parameter::kMirror, settings.mirrorImage != 0 ? 1 : 0);
  Put(block, parameter::kSharpness, LowByte(settings.sharpness / 500));
  Put(block, parameter::kParamG, settings.paramG);
}

void PutArea(ParameterBlock& block, const ExtScanPlan& plan) {
  Put(block, parameter::kMainResolution, plan.dotsPerInch);
  Put(block, parameter::kSubResolution, plan.dotsPerInch);
  Put(block, parameter::kAreaLeft, plan.sentLeft);
  Put(block, parameter::kAreaTop, plan.top);
  Put(block, parameter::kAreaWidth, plan.sentWidth);
  Put(block, parameter::kAreaHeight, plan.linesToScan);
  Put(block, parameter::kLinesPerBlock, static_cast<std::uint8_t>(plan.linesPerBlock));
}

}  // namespace pmddb832
