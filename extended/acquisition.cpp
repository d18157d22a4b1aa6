#include <algorithm>

#include "extended/ext_scan_cmd.h"
#include "imaging/line_conversion.h"
#include "interface/scanner_settings.h"
#include "platform/operating_system.h"
#include "platform/trace.h"
#include "wire/document_source.h"
#include "wire/error_codes.h"
#include "wire/protocol_bytes.h"

namespace pmddb832 {
namespace {

constexpr std::uint32_t kLinesPerProgressCall = 5;
constexpr std::uint32_t kAllDone = 100;  // percent

}  // namespace

void ExtScanCmd::AcquireImage(std::uint8_t* buffer, std::uint32_t bufferBytes,
                              AcquisitionBand* band) {
  const TraceScope trace{"Extcmd::AcquireImage"};
  errorCode_ = kNoError;
  band->status = kAcquisitionFailed;
  if (hostLineBytes_ == 0 || dataBuffer_ == nullptr) {
    Fail(kTransferFailed);
    return;
  }
  const std::uint32_t rowBytes = hostLineBytes_;
  const auto linesThatFit = static_cast<std::uint16_t>(bufferBytes / rowBytes);
  if (linesThatFit == 0) return;
  if (transferActive_ == 0 && StartTransfer() == 0) return;
  const std::uint32_t linesLeft = heightPx_ - std::min(curLine_, heightPx_);
  const std::uint32_t lines = std::min<std::uint32_t>(linesThatFit, linesLeft);
  band->lines = lines;
  if (DeliverBand({buffer, std::size_t{lines} * rowBytes}, lines) == 0) return;
  const bool done = curLine_ >= heightPx_;
  band->done = done ? 1 : 0;
  band->bytes = lines * rowBytes;
  if (!done || FinishPage() != 0) band->status = kAcquisitionGoOn;
}

std::uint32_t ExtScanCmd::StartTransfer() {
  if (SetupScanParameter() == 0) return Fail(kScannerError);
  if (StartScanningProcess() == 0) {
    if (errorCode_ == kWarmingUp) return 0;
    const std::uint32_t cause = GetOptionStatus(nullptr, currentSettings->docFeedOption);
    return Fail(cause == kNoError ? kScannerError : cause);
  }
  transferActive_ = 1;
  return 1;
}

std::uint32_t ExtScanCmd::StartScanningProcess() {
  const TraceScope trace{"Extcmd::StartScanningProcess"};
  if (RequestTransfer() == 0) return 0;
  if ((Get(*blockInfo_, transfer::kStatus) & transfer::kError) == 0) return 1;
  if (RequestTransfer() == 0) return 0;
  return (Get(*blockInfo_, transfer::kStatus) & transfer::kError) == 0 ? 1 : 0;
}

// One attempt to start the scan: 1 when the scanner answered with a header.
std::uint32_t ExtScanCmd::RequestTransfer() {
  if (CheckWarmup() == 0) return 0;
  platform::RepaintNow(currentSettings->progressWindow);
  if (SendFSCode('G') == 0) return 0;
  if (Wire().Read(*blockInfo_) == 0) return 0;
  return Get(*blockInfo_, transfer::kStx) == kStx ? 1 : 0;
}

std::uint32_t ExtScanCmd::DeliverBand(std::span<std::uint8_t> band, std::uint32_t lines) {
  const std::size_t rowBytes = lines == 0 ? 0 : band.size() / lines;
  for (std::uint32_t i = 0; i < lines; ++i) {
    if (i % kLinesPerProgressCall == 0) ReportProgress();
    const std::uint32_t row = IsTopDown(hostPixelType_) ? i : lines - 1 - i;
    if (GetScanData() == 0) return 0;
    ConvertScanLine(band.subspan(row * rowBytes, rowBytes));
    ++curLine_;
  }
  return 1;
}

void ExtScanCmd::ReportProgress() const {
  if (progressCallback_ == nullptr) return;
  progressCallback_(heightPx_ == 0 ? kAllDone : curLine_ * kAllDone / heightPx_);
}

void ExtScanCmd::ConvertScanLine(HostRow row) {
  const auto pad = static_cast<std::int16_t>(padPixels_);
  if (scanPixelType_ == kTrueColour) {
    BuildTrueColor(line_, row, pad);
  } else {
    ConvertLine(scanPixelType_, line_, row, {convertFlag_ != 0, pad});
  }
}

std::uint32_t ExtScanCmd::FinishPage() {
  if (progressCallback_ != nullptr) progressCallback_(kAllDone);
  if (currentSettings == nullptr) return Fail(kTransferFailed);
  const ScannerSettings& settings = *currentSettings;
  if (settings.scanSource == 0 || settings.docFeedOption != kFeeder || abortRequested_ != 0) {
    return 1;
  }
  if (settings.mainStatusBit5 == 0) return EjectPage();
  if (settings.keepPaper != 0) return 1;
  if (settings.feederStatusExtra == 0) return EjectPage();
  return GetOptionStatus(nullptr, kFeeder) == kOptionEmpty ? EjectPage() : 1;
}

}  // namespace pmddb832
