#include <algorithm>

#include "imaging/line_conversion.h"
#include "imaging/pixel_conversion.h"
#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "standard/std_scan_cmd.h"
#include "wire/error_codes.h"

namespace pmddb832 {
namespace {

constexpr std::uint32_t kLinesPerProgressCall = 10;
constexpr std::uint32_t kAllDone = 100;             // percent
constexpr std::uint32_t kEjectingCommandLevel = 4;  // ejects whatever the source was

}  // namespace

void StdScanCmd::AcquireImage(std::uint8_t* buffer, std::uint32_t bufferBytes,
                              AcquisitionBand* band) {
  const TraceScope trace{"Scmdnt::AcquireImage"};
  lastError_ = kNoError;
  const bool fresh = band->status == kAcquisitionFreshBuffer;
  band->status = kAcquisitionFailed;
  if (isOpen_ == 0 || lineBytes_ == 0) {
    Fail(kTransferFailed);
    return;
  }
  if (linesDone_ == 0 && acquireArmed_ != 0 &&
      (PrepareReceiveBuffer(fresh, bufferBytes) == 0 || InitiateScan() == 0)) {
    return;
  }
  const std::uint32_t rowBytes = lineBytes_;
  const auto linesThatFit = static_cast<std::uint16_t>(bufferBytes / rowBytes);
  if (linesThatFit == 0) {
    aborting_ = 1;
    NextScanStep();
    return;
  }
  const std::uint32_t linesLeft = linesTotal_ - std::min(linesDone_, linesTotal_);
  const std::uint32_t lines = std::min<std::uint32_t>(linesThatFit, linesLeft);
  band->lines = lines;
  if (DeliverBand({buffer, std::size_t{lines} * rowBytes}, rowBytes) == 0) return;
  linesDone_ += lines;
  const bool done = linesDone_ >= linesTotal_;
  band->done = done ? 1 : 0;
  band->bytes = format_.bytesPerUnit * static_cast<std::uint32_t>(line_.pixelCount) * lines;
  if (!done || FinishPage() != 0) band->status = kAcquisitionGoOn;
}

std::uint32_t StdScanCmd::DeliverBand(std::span<std::uint8_t> rows, std::uint32_t rowBytes) {
  const auto lines = static_cast<std::uint32_t>(rows.size() / rowBytes);
  const bool topDown = IsTopDown(acquireMode_);
  for (std::uint32_t i = 0; i < lines; ++i) {
    if (i % kLinesPerProgressCall == 0) ReportProgress(linesDone_ + i);
    if (GetScanLine() == 0) return 0;
    const std::size_t row = topDown ? i : lines - 1 - i;
    ConvertScanLine(rows.subspan(row * rowBytes, rowBytes));
  }
  return 1;
}

void StdScanCmd::ReportProgress(std::uint32_t linesDelivered) const {
  if (progressCallback_ == nullptr) return;
  progressCallback_(linesTotal_ == 0 ? kAllDone : linesDelivered * kAllDone / linesTotal_);
}

// Types 1 and 3 are not converted: their rows stay as the host gave them.
void StdScanCmd::ConvertScanLine(HostRow row) const {
  const auto pad = static_cast<std::int16_t>(padPixels_);
  const bool convert = acquireMode_ != 1;
  switch (pixelType_) {
    case kPalette:
      return Scanutil::Pix256Color(line_, row, convert, pad);
    case kTrueColour:
      return Scanutil::PixTrueColor(line_, row, convert, pad);
    default:
      return ConvertLine(pixelType_, line_, row, {convert, pad});
  }
}

std::uint32_t StdScanCmd::FinishPage() {
  if (progressCallback_ != nullptr) progressCallback_(kAllDone);
  // The host may have closed the scanner in its progress routine.
  if (isOpen_ == 0 || currentSettings == nullptr) return Fail(kTransferFailed);
  const bool ejects = IsFeederSelected() || commandLevel_ == kEjectingCommandLevel;
  if (!ejects || aborting_ != 0) return 1;
  if (currentSettings->mainStatusBit5 != 0 && currentSettings->keepPaper != 0) return 1;
  return EjectPage();
}

}  // namespace pmddb832
