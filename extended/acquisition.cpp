#include <algorithm>

#include "extended/ext_commands.h"
#include "extended/ext_scan_cmd.h"
#include "imaging/band.h"
#include "imaging/line_conversion.h"
#include "imaging/row_frame.h"
#include "interface/scanner_settings.h"
#include "platform/operating_system.h"
#include "platform/trace.h"
#include "wire/commands.h"
#include "wire/document_source.h"
#include "wire/protocol_bytes.h"

namespace pmddb832 {
namespace {

constexpr std::uint32_t kLinesPerProgressCall = 5;

void BuildTrueColor(const ScanLines& lines, const HostRows& rows,
                    const LineConversion& conversion) {
  const TraceScope trace{"Extcmd::BuildTrueColor"};
  CopyRows(lines, rows, {conversion.pad, conversion.whiteFill}, 3);
}

void Convert(const ScanLines& lines, const HostRows& rows, const LineConversion& conversion) {
  if (conversion.pixelType == kTrueColour) {
    BuildTrueColor(lines, rows, conversion);
  } else {
    ConvertLines(lines, rows, conversion);
  }
}

// One attempt to start the scan: whether the scanner answered with a header.
bool RequestTransfer(GeneralCmd& scanner, Call& call, StatusBlock& block, TransferHeader& header) {
  if (Extcmd::CheckWarmup(scanner, call, block) == 0) return false;
  platform::RepaintNow(call.settings.progressWindow);
  if (Extcmd::SendFSCode(scanner, call, fs::kStart) == 0) return false;
  if (scanner.Wire()->Read(call, header) == 0) return false;
  return Get(header, transfer::kStx) == kStx;
}

// A scanner that reports an error is asked once more.
bool StartScanningProcess(GeneralCmd& scanner, Call& call, StatusBlock& block,
                          TransferHeader& header) {
  const TraceScope trace{"Extcmd::StartScanningProcess"};
  constexpr int kAttempts = 2;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    if (!RequestTransfer(scanner, call, block, header)) return false;
    if ((Get(header, transfer::kStatus) & transfer::kError) == 0) return true;
  }
  return false;
}

}  // namespace

void ExtScanCmd::AcquireImage(Call& call, std::uint8_t* buffer, std::uint32_t bufferBytes,
                              AcquisitionBand* band) {
  const TraceScope trace{"Extcmd::AcquireImage"};
  LastError() = kNoError;
  band->status = kAcquisitionFailed;
  const std::uint32_t rowBytes = plan_.hostLineBytes;
  if (rowBytes == 0 || !stream_.HasBuffer()) {
    Fail(kTransferFailed);
    return;
  }
  const std::uint32_t linesThatFit = LinesThatFit(bufferBytes, rowBytes);
  if (linesThatFit == 0) return;
  const std::uint32_t setUp = stream_.SetUpNumber();
  if (!stream_.IsStarted() && !StartTransfer(call)) return;
  const std::uint32_t linesLeft = plan_.height - std::min(stream_.LinesDelivered(), plan_.height);
  const std::uint32_t lines = std::min(linesThatFit, linesLeft);
  band->lines = lines;
  if (!Deliver(call, setUp,
               {{buffer, std::size_t{lines} * rowBytes},
                rowBytes,
                lines,
                IsTopDown(plan_.outputFormat)})) {
    return;
  }
  const bool done = stream_.LinesDelivered() >= plan_.height;
  band->done = done ? 1 : 0;
  band->bytes = lines * rowBytes;
  if (!done || FinishPage(call)) band->status = kAcquisitionGoOn;
}

// The host may set another scan up out of its progress routine: the band then ends.
bool ExtScanCmd::Deliver(Call& call, std::uint32_t setUp, const Band& rows) {
  // Without a routine there is nothing to stop for: whoever sets one up ends the band.
  const std::uint32_t linesPerReport = progress_ != nullptr ? kLinesPerProgressCall : rows.lines;
  const auto report = [&](std::uint32_t) {
    if (progress_ != nullptr) progress_(PercentDone(stream_.LinesDelivered(), plan_.height));
  };
  const auto next = [&](ScanLines& lines, std::uint32_t most) {
    if (stream_.SetUpNumber() != setUp) return Fail(kTransferFailed);
    return stream_.NextLines(*this, call, plan_, most, lines);
  };
  const auto convert = [&](const ScanLines& lines, const HostRows& targets) {
    Convert(lines, targets, ConversionFor(plan_, call.settings));
    stream_.CountLines(lines.count);
  };
  return DeliverBand(rows, linesPerReport, report, next, convert);
}

bool ExtScanCmd::StartTransfer(Call& call) {
  const std::uint32_t setUp = stream_.SetUpNumber();
  if (SetupScanParameter(call) == 0) return Fail(kScannerError);
  if (!StartScanningProcess(*this, call, *work_.status, *work_.blockInfo)) {
    if (LastError() == kWarmingUp) return false;
    const std::uint32_t cause = GetOptionStatus(call, nullptr, call.settings.docFeedOption);
    return Fail(cause == kNoError ? kScannerError : static_cast<ErrorCode>(cause));
  }
  // The host may have set another scan up out of its device or a repaint.
  if (stream_.SetUpNumber() != setUp) return Fail(kTransferFailed);
  stream_.Start(*work_.blockInfo);
  return true;
}

bool ExtScanCmd::FinishPage(Call& call) {
  if (progress_ != nullptr) progress_(kAllDone);
  const ScannerSettings& settings = call.settings;
  if (settings.scanSource == 0 || settings.docFeedOption != kFeeder || stream_.IsCancelled()) {
    return true;
  }
  if (settings.mainStatusBit5 == 0) return EjectPage(call) != 0;
  if (settings.keepPaper != 0) return true;
  if (settings.feederStatusExtra == 0) return EjectPage(call) != 0;
  return GetOptionStatus(call, nullptr, kFeeder) != kOptionEmpty || EjectPage(call) != 0;
}

std::uint32_t ExtScanCmd::AbortScan(Call& call) {
  const TraceScope trace{"Extcmd::AbortScan"};
  stream_.Cancel();
  if (!stream_.IsStarted()) {
    Fail(kTransferFailed);
    return 0;
  }
  ScanLines dropped;
  while (!stream_.IsOver()) {
    if (!stream_.NextLines(*this, call, plan_, 1, dropped)) return 0;
  }
  return 1;
}

}  // namespace pmddb832
