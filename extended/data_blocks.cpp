#include <algorithm>
#include <cstring>

#include "extended/ext_scan_cmd.h"
#include "imaging/row_frame.h"
#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "wire/document_source.h"
#include "wire/error_codes.h"
#include "wire/protocol_bytes.h"

namespace pmddb832 {
namespace {

constexpr int kWhite = 0xFF;

}  // namespace

std::uint32_t ExtScanCmd::AbortScan() {
  const TraceScope trace{"Extcmd::AbortScan"};
  abortRequested_ = 1;
  curLine_ = 0;
  if (transferActive_ == 0) return Fail(kTransferFailed);
  while (endOfData_ == 0) {
    if (GetScanData() == 0) return 0;
  }
  return 1;
}

// Moves the cursor to the next line, and receives the next block where the line is its first.
std::uint32_t ExtScanCmd::GetScanData() {
  const TraceScope trace{"Extcmd::GetScanData"};
  const std::uint32_t linesPerBlock = Get(*parameters_, parameter::kLinesPerBlock);
  // The host's progress routine may have closed the scanner or taken the settings away.
  if (dataBuffer_ == nullptr || currentSettings == nullptr || linesPerBlock == 0) {
    return Fail(kTransferFailed);
  }
  if (curLine_ % linesPerBlock == 0) {
    lineOffset_ = 0;
    if (endOfData_ == 0 && ReceiveBlock() == 0) return 0;
  } else {
    lineOffset_ += rawLineBytes_;
  }
  PointAtLine();
  return 1;
}

std::uint32_t ExtScanCmd::ReceiveBlock() {
  const bool last = blocksRead_ >= Get(*blockInfo_, transfer::kFullBlocks);
  const std::uint32_t bytes =
      last ? Get(*blockInfo_, transfer::kLastBlockBytes) : Get(*blockInfo_, transfer::kBlockBytes);
  receivedBytes_ = 0;
  if (bytes >= dataBufferSize_) return Fail(kTransferFailed);
  if (Wire().Read({dataBuffer_.get(), bytes + 1}) == 0) return Fail(kTransferFailed);
  receivedBytes_ = bytes;
  if ((dataBuffer_[bytes] & transfer::kError) != 0) {
    const std::uint32_t cause = GetOptionStatus(nullptr, currentSettings->docFeedOption);
    return Fail(cause == kScannerError ? kTransferFailed : cause);
  }
  if (last) {
    endOfData_ = 1;
  } else if (AnswerBlock() == 0) {
    return Fail(kTransferFailed);
  }
  ++blocksRead_;
  return 1;
}

std::uint32_t ExtScanCmd::AnswerBlock() {
  if (abortRequested_ == 0) return SendAck(kAck);
  if (SendAck(kCan) == 0) return 0;
  const ScannerSettings& settings = *currentSettings;
  if (settings.scanSource != 0 && settings.docFeedOption == kFeeder) EjectPage();
  endOfData_ = 1;
  return 1;
}

// Lines below the area that the scanner sends are white. The line reaches to the end of what was
// received, because a conversion may read beyond it.
void ExtScanCmd::PointAtLine() {
  std::uint32_t end = receivedBytes_;
  if (curLine_ >= linesToScan_ && lineOffset_ <= dataBufferSize_ &&
      rawLineBytes_ <= dataBufferSize_ - lineOffset_) {
    std::memset(dataBuffer_.get() + lineOffset_, kWhite, rawLineBytes_);
    end = std::max(end, lineOffset_ + rawLineBytes_);
  }
  const std::uint32_t start = std::min(lineOffset_, end);
  line_.plane0 = {dataBuffer_.get() + start, end - start};
  line_.pixelCount =
      static_cast<std::int32_t>(scanPixelType_ == kLineArt ? rawLineBytes_ : widthPx_);
}

void ExtScanCmd::BuildTrueColor(const ScanLine& line, HostRow row, std::int16_t padPixels) {
  const TraceScope trace{"Extcmd::BuildTrueColor"};
  CopyRow(line, row, padPixels, 3);
}

}  // namespace pmddb832
