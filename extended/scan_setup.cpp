#include "extended/ext_scan_cmd.h"
#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "wire/error_codes.h"

namespace pmddb832 {
namespace {

constexpr std::uint8_t kColorModeBlueFirst = 0x23;

// Units of a line that is `pixels` wide.
std::uint32_t UnitsFor(std::uint32_t pixels, const PixelFormat& format) {
  return pixels / format.pixelsPerUnit + (pixels % format.pixelsPerUnit != 0 ? 1 : 0);
}

// Rounds up to a multiple of 4, except for the host's pixel type 4. No type of this set packs two
// pixels into a unit, the other case that stays unaligned.
std::uint32_t AlignLine(std::uint32_t bytes, std::uint32_t hostPixelType) {
  return hostPixelType == kPalette ? bytes : (bytes + 3) & ~3u;
}

}  // namespace

void ExtScanCmd::InitAcquire(std::uint32_t hostPixelType, ProgressCallback progress,
                             AcquisitionSetup* setup) {
  const TraceScope trace{"Extcmd::InitAcquire"};
  const ScannerSettings& settings = *currentSettings;
  widthPx_ = settings.areaWidthPx;
  heightPx_ = settings.areaHeightPx;
  areaLeftPx_ = settings.areaLeftPx;
  areaTopPx_ = settings.areaTopPx;
  hostPixelType_ = hostPixelType;
  convertFlag_ = hostPixelType != 1 ? 1 : 0;
  SetPixelType();
  hostLineBytes_ = AlignLine(UnitsFor(widthPx_, format_) * format_.bytesPerUnit, hostPixelType);
  curLine_ = 0;
  blocksRead_ = 0;
  abortRequested_ = 0;
  endOfData_ = 0;
  transferActive_ = 0;
  progressCallback_ = progress;
  const std::uint32_t refused = LineError();
  if (refused != kNoError) errorCode_ = refused;
  setup->status = refused == kNoError ? kAcquisitionGoOn : kAcquisitionFailed;
  setup->lineBytes = hostLineBytes_;
  setup->widthPixels = widthPx_;
  setup->heightLines = heightPx_;
}

std::uint32_t ExtScanCmd::LineError() const {
  if (widthPx_ > kWidestLine) return kAreaBeyondLimits;
  if (hostLineBytes_ == 0) return kEmptyLine;
  return kDataBufferBytes / hostLineBytes_ == 0 ? kTooLarge : kNoError;
}

void ExtScanCmd::SetPixelType() {
  const TraceScope trace{"Extcmd::SetPixelType"};
  const std::uint32_t pixelType = currentSettings->pixelType;
  const PixelFormat* format = FindPixelFormat(pixelType, currentSettings->previewMode != 0);
  if (format == nullptr || IsStandardSetOnly(pixelType)) return;
  format_ = *format;
  scanPixelType_ = pixelType;
  if (pixelType == kTrueColour && convertFlag_ != 0) format_.colorMode = kColorModeBlueFirst;
}

}  // namespace pmddb832
