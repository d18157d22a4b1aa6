#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "standard/line_size.h"
#include "standard/std_scan_cmd.h"
#include "wire/error_codes.h"

namespace pmddb832 {

void StdScanCmd::InitAcquire(std::uint32_t outputFormat, ProgressCallback progress,
                             AcquisitionSetup* setup) {
  const TraceScope trace{"Scmdnt::InitAcquire"};
  lastError_ = kNoError;
  acquireMode_ = outputFormat;
  TakeScanArea();
  lineBytes_ = HostLineBytes(areaWidth_, format_, acquireMode_);
  if (lineBytes_ == 0) {
    Fail(kEmptyLine);
    return;
  }
  linesDone_ = 0;
  linesTotal_ = areaHeight_;
  progressCallback_ = progress;
  fillWhite_ = 0;
  acquireArmed_ = 1;
  const bool fits = FitsOneTransfer(lineBytes_, pixelType_, format_);
  if (!fits) Fail(kTooLarge);
  setup->status = fits ? kAcquisitionGoOn : kAcquisitionFailed;
  setup->lineBytes = lineBytes_;
  setup->widthPixels = areaWidth_;
  setup->heightLines = areaHeight_;
}

void StdScanCmd::TakeScanArea() {
  const ScannerSettings& settings = *currentSettings;
  areaWidth_ = settings.areaWidthPx;
  areaHeight_ = settings.areaHeightPx;
  areaLeft_ = settings.areaLeftPx;
  areaTop_ = settings.areaTopPx;
  sentWidth_ = areaWidth_;
  SetPixelType();
}

void StdScanCmd::SetPixelType() {
  const TraceScope trace{"Scmdnt::SetPixelType"};
  const std::uint32_t pixelType = currentSettings->pixelType;
  const PixelFormat* format = FindPixelFormat(pixelType, currentSettings->previewMode != 0);
  if (format == nullptr) return;
  format_ = *format;
  pixelType_ = pixelType;
}

}  // namespace pmddb832
