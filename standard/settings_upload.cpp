#include "standard/settings_upload.h"

#include "imaging/units.h"
#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "standard/scan_area.h"
#include "standard/std_commands.h"
#include "wire/commands.h"
#include "wire/deep_samples.h"
#include "wire/halftone_codes.h"
#include "wire/wire_block.h"

namespace pmddb832::Scmdnt {
namespace {

constexpr std::uint8_t kPlainColorMode = 1;
constexpr std::uint8_t kColorModeWithSubstitute = 2;

std::uint8_t LowByte(std::int32_t value) {
  return static_cast<std::uint8_t>(value);
}

std::uint16_t Low16(std::uint32_t value) {
  return static_cast<std::uint16_t>(value);
}

// One upload.
class Upload {
 public:
  Upload(GeneralCmd& scanner, Call& call, const StdScannerFacts& facts, ScanPlan& plan)
      : scanner_(scanner), call_(call), settings_(call.settings), facts_(facts), plan_(plan) {}

  void Run() {
    if (!CheckStatus()) return;
    if (facts_.optionAvailable) SendByte(esc::kOptionUnit, settings_.scanSource);
    if (Level().stopsAtError && scanner_.LastError() != kNoError) return;
    SendColours();
    SendHalftone();
    SendThreshold();
    SendGamma();
    SendColourCorrection();
    SendMirrorAndFilters();
    SendResolutionAndZoom();
    SendArea();
  }

 private:
  const LevelTraits& Level() const { return facts_.level; }
  void SendByte(std::uint8_t letter, std::uint8_t value) {
    SendParam2(scanner_, call_, letter, value);
  }
  void SendTable(std::uint8_t letter, std::uint8_t prefix, std::span<const std::uint8_t> table) {
    SendParam4(scanner_, call_, letter, prefix, table);
  }

  bool CheckStatus();
  void SendColours();
  void SendHalftone();
  void SendThreshold();
  void SendGamma();
  void SendGammaTables();
  void SendColourCorrection();
  void SendMirrorAndFilters();
  void SendResolutionAndZoom();
  void SendArea();
  std::uint32_t WidthLimit() const;
  bool IsCentred() const;

  GeneralCmd& scanner_;
  Call& call_;
  const ScannerSettings& settings_;
  const StdScannerFacts& facts_;
  ScanPlan& plan_;
};

// The header of the reply is taken as it is, and its data are not read.
bool Upload::CheckStatus() {
  const TraceScope trace{"Scmdnt::CheckStatus"};
  ReplyHeader header{};
  return scanner_.SendEscCode(call_, esc::kCondition) != 0 &&
         scanner_.Wire()->Read(call_, header) != 0;
}

void Upload::SendColours() {
  std::uint8_t colorMode = plan_.format.colorMode;
  if (settings_.monoScan != 0) {
    colorMode = SingleChannelMode(settings_.dropoutChannel);
  } else if (colorMode == kColorModeWithSubstitute && settings_.altColorMode == 1) {
    colorMode = kPlainColorMode;
  }
  SendByte(esc::kColorMode, colorMode);
  SendByte(esc::kBitsPerSample,
           IsDeep(plan_.pixelType) ? kUsualDeepBits : plan_.format.bitsPerSample);
}

void Upload::SendHalftone() {
  const bool overrides = settings_.halftoneOverride != 0 && Level().halftoneOverride;
  SendByte(esc::kHalftone,
           overrides ? kHalftoneOverrideCode : HalftoneCode(settings_.halftoneIndex));
  if (!Level().enhancement) return;
  const std::uint8_t enhancement = overrides ? 2 : 1;
  SendByte(esc::kEnhancement, settings_.optionS != 0 ? enhancement : std::uint8_t{0});
}

void Upload::SendThreshold() {
  if (!Level().threshold || settings_.thresholdT == kThresholdUnset) return;
  SendByte(esc::kThreshold, LowByte(settings_.thresholdT));
}

void Upload::SendGamma() {
  if (Level().gammaTables != 0 && settings_.customGamma != 0) {
    SendGammaTables();
    SendByte(esc::kGammaCode, settings_.customGammaCode);
    return;
  }
  SendByte(esc::kGammaCode, scanner_.SetGamma(settings_.gamma));
  SendByte(esc::kBrightness, LowByte(settings_.brightness / 333));
}

void Upload::SendGammaTables() {
  if (Level().gammaTables == 1 || settings_.monoScan != 0) {
    SendTable(esc::kGammaTable, 'M', settings_.gammaTableR);
    return;
  }
  SendTable(esc::kGammaTable, 'R', settings_.gammaTableR);
  SendTable(esc::kGammaTable, 'G', settings_.gammaTableG);
  SendTable(esc::kGammaTable, 'B', settings_.gammaTableB);
}

void Upload::SendColourCorrection() {
  if (!Level().colorCorrection || settings_.monoScan != 0) return;
  const bool corrects = Level().colorMatrix && settings_.colorCorrection != 0;
  if (corrects) SendTable(esc::kColorMatrix, kNoPrefix, settings_.colorMatrix);
  SendByte(esc::kColorCorrection, corrects ? 1 : 0);
}

void Upload::SendMirrorAndFilters() {
  if (Level().mirror) SendByte(esc::kMirror, settings_.mirrorImage != 0 ? 1 : 0);
  if (!Level().status) return;
  SendByte(esc::kSharpness, LowByte(settings_.sharpness / 500));
  SendByte(esc::kParamG, settings_.paramG);
}

void Upload::SendResolutionAndZoom() {
  SendParamW3(scanner_, call_, esc::kResolution, settings_.resolution, settings_.resolution);
  const std::uint8_t zoom = LowByte(settings_.zoom);
  SendParam3(scanner_, call_, esc::kZoom, zoom, zoom);
}

void Upload::SendArea() {
  const LinePlacement line = PlaceLine(plan_.left, plan_.width, WidthLimit(), Level(),
                                       settings_.mirrorImage != 0, settings_.paramG);
  plan_.padPixels = line.padPixels;
  if (const ErrorCode error = AreaError(Level(), line.left, plan_.top, line.width, plan_.height);
      error != kNoError) {
    scanner_.Fail(error);
    return;
  }
  const ClippedWidth sent = ClipWidth(Level(), plan_.format.bitsPerSample, line.width);
  plan_.sentWidth = sent.width;
  plan_.sentLeft = IsCentred() ? (plan_.width - sent.width) / 2 : line.left;
  SendParamW5(scanner_, call_, esc::kArea,
              {Low16(plan_.sentLeft), Low16(plan_.top), Low16(sent.width), Low16(plan_.height)});
  if (sent.tooLarge) scanner_.Fail(kTooLarge);
}

std::uint32_t MaximumWidth(const StdScannerFacts& facts, const AreaSize& area,
                           std::uint16_t resolution) {
  const TraceScope trace{"Scmdnt::MaximumWidth"};
  const double width = Scanutil::PixelsToInchesORWIA(area.width, facts.LastResolution());
  return RoundDownTo8(static_cast<std::uint32_t>(Scanutil::InchesToPixelsORWIA(width, resolution)));
}

// Width of the selected area in pixels at the scan resolution.
std::uint32_t Upload::WidthLimit() const {
  const AreaSize& area = facts_.SelectedArea(settings_.scanSource);
  const std::uint32_t product = std::uint32_t{settings_.zoom} * settings_.resolution;
  if (product > ProductLimit(facts_.modelQuirk)) {
    return MaximumWidth(facts_, area,
                        Scanutil::CalcResolution(settings_.resolution, settings_.zoom));
  }
  return (area.width * product / facts_.LastResolution() + 50) / 100;
}

// With a feeder, a scan of the whole length of the area at the first listed resolution is taken
// from the middle of the line.
bool Upload::IsCentred() const {
  const std::uint32_t height =
      settings_.scanSource == 0 ? settings_.bedHeight : settings_.optionHeight;
  return settings_.docFeedOption == kFeeder && facts_.FirstResolution() == settings_.resolution &&
         plan_.height == LinesOfArea(height, settings_.resolution);
}

}  // namespace

void UpdateSettings(GeneralCmd& scanner, Call& call, const StdScannerFacts& facts, ScanPlan& plan) {
  const TraceScope trace{"Scmdnt::UpdateSettings"};
  Upload(scanner, call, facts, plan).Run();
}

}  // namespace pmddb832::Scmdnt
