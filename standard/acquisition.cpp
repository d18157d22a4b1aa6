#include <algorithm>

#include "imaging/band.h"
#include "imaging/line_conversion.h"
#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "standard/std_scan_cmd.h"

namespace pmddb832 {
namespace {

constexpr std::uint32_t kLinesPerProgressCall = 10;

}  // namespace

void StdScanCmd::AcquireImage(Call& call, std::uint8_t* buffer, std::uint32_t bufferBytes,
                              AcquisitionBand* band) {
  const TraceScope trace{"Scmdnt::AcquireImage"};
  LastError() = kNoError;
  const bool fresh = band->status == kAcquisitionFreshBuffer;
  band->status = kAcquisitionFailed;
  const std::uint32_t rowBytes = plan_.hostLineBytes;
  if (!isOpen_ || rowBytes == 0) {
    Fail(kTransferFailed);
    return;
  }
  const std::uint32_t setUp = stream_.SetUpNumber();
  if (linesDone_ == 0 && stream_.IsArmed() &&
      (!stream_.Prepare(*this, plan_, fresh, bufferBytes) || InitiateScan(call) == 0)) {
    return;
  }
  const std::uint32_t linesThatFit = LinesThatFit(bufferBytes, rowBytes);
  if (linesThatFit == 0) {
    stream_.Cancel();
    stream_.NextScanStep(*this, call, facts_);
    return;
  }
  const std::uint32_t linesLeft = linesTotal_ - std::min(linesDone_, linesTotal_);
  const std::uint32_t lines = std::min(linesThatFit, linesLeft);
  band->lines = lines;
  const Band rows{
      {buffer, std::size_t{lines} * rowBytes}, rowBytes, lines, IsTopDown(plan_.outputFormat)};
  std::uint32_t lineCount = 0;
  if (!Deliver(call, setUp, rows, lineCount)) return;
  linesDone_ += lines;
  const bool done = linesDone_ >= linesTotal_;
  band->done = done ? 1 : 0;
  band->bytes = plan_.format.bytesPerUnit * lineCount * lines;
  if (!done || FinishPage(call)) band->status = kAcquisitionGoOn;
}

// `lineCount` is what counts of the last line: its pixels, or the bytes of a line of line art, as
// far as the host's row holds them. The host may set another scan up out of its progress routine:
// the band then ends.
bool StdScanCmd::Deliver(Call& call, std::uint32_t setUp, const Band& rows,
                         std::uint32_t& lineCount) {
  // Without a routine there is nothing to stop for: whoever sets one up ends the band.
  const std::uint32_t linesPerReport = progress_ != nullptr ? kLinesPerProgressCall : rows.lines;
  const auto report = [&](std::uint32_t line) {
    if (progress_ != nullptr) progress_(PercentDone(linesDone_ + line, linesTotal_));
  };
  const auto next = [&](ScanLines& lines, std::uint32_t most) {
    if (stream_.SetUpNumber() != setUp) return Fail(kTransferFailed);
    return stream_.GetScanLines(*this, call, facts_, plan_, most, lines);
  };
  const auto convert = [&](const ScanLines& lines, const HostRows& targets) {
    ConvertLines(lines, targets, ConversionFor(plan_, call.settings));
    lineCount = static_cast<std::uint32_t>(lines.first.pixelCount);
    if (plan_.pixelType == kLineArt) lineCount = std::min(lineCount, rows.rowBytes);
  };
  return DeliverBand(rows, linesPerReport, report, next, convert);
}

bool StdScanCmd::FinishPage(Call& call) {
  if (progress_ != nullptr) progress_(kAllDone);
  const ScannerSettings& settings = call.settings;
  const bool ejects = facts_.IsFeederSelected(settings.scanSource) || facts_.level.alwaysEjects;
  if (!ejects || stream_.IsCancelled()) return true;
  if (settings.mainStatusBit5 != 0 && settings.keepPaper != 0) return true;
  return EjectPage(call) != 0;
}

std::uint32_t StdScanCmd::AbortScan(Call& call) {
  const TraceScope trace{"Scmdnt::AbortScan"};
  stream_.Abort();
  return stream_.NextScanStep(*this, call, facts_) ? 1 : 0;
}

}  // namespace pmddb832
