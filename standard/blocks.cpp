#include <algorithm>
#include <cstring>

#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "standard/std_scan_cmd.h"
#include "wire/error_codes.h"
#include "wire/protocol_bytes.h"

namespace pmddb832 {
namespace {

constexpr int kWhite = 0xFF;

}  // namespace

std::uint32_t StdScanCmd::AbortScan() {
  const TraceScope trace{"Scmdnt::AbortScan"};
  fillWhite_ = 1;
  aborting_ = 1;
  return NextScanStep();
}

// Moves the cursor to the next line, and receives the next block where the current one is used up.
// Behind the last block there are no more lines, except for repetitions of the first one after an
// abort and of the last one where blocks have one line.
std::uint32_t StdScanCmd::NextScanStep() {
  const TraceScope trace{"Scmdnt::NextScanStep"};
  if (receiveBuffer_ == nullptr || currentSettings == nullptr) return Fail(kTransferFailed);
  if (linesDone_ == 0 && blockLineIndex_ == 0) linesReceived_ = 0;
  if (aborting_ != 0 && ackPending_ != 0) blockLines_ = blockLineIndex_ = 0;
  if (blockLineIndex_ == blockLines_ && scanActive_ != 0 && ReceiveBlock() == 0) return 0;
  if (scanActive_ == 0 && aborting_ != 0) blockLineIndex_ = 0;
  lineOffset_ = blockMode_ != 0 ? blockLineIndex_ * lineLength_ : 0;
  if (blockMode_ == 0) {
    blockLineIndex_ = 1;
  } else if (blockLineIndex_ < blockLines_) {
    ++blockLineIndex_;
  }
  return 1;
}

std::uint32_t StdScanCmd::ReceiveBlock() {
  BlockHeader header{};
  if (ReadBlockHeader(header) == 0) return 0;
  const auto lines = blockMode_ != 0 ? Get(header, block::kLines) : std::uint16_t{1};
  if (lines == 0) {
    GetStatusNoE(replyBuffer_);  // asks for the cause; whatever it is, the call fails
    return 0;
  }
  blockLines_ = blockLineIndex_ = 0;
  const std::uint32_t lineBytes = Get(header, block::kLineBytes);
  if (ReadLines(lineBytes * lines) == 0) return 0;
  const std::uint8_t blockStatus = Get(header, block::kStatus);
  const bool last = status::IsSet(blockStatus, block::kLast);
  if (!last && AnswerBlock(blockStatus, lines) == 0) return 0;
  if (last || aborting_ != 0) scanActive_ = 0;
  blockLines_ = lines;
  lineLength_ = lineBytes;
  return 1;
}

// The header that came with the start is the first block's, whatever it begins with.
std::uint32_t StdScanCmd::ReadBlockHeader(BlockHeader& header) {
  if (blockMode_ != 0 && headerPending_ != 0) {
    headerPending_ = 0;
    header = startHeader_;
    return 1;
  }
  const std::size_t bytes = blockMode_ != 0 ? header.size() : block::kOneLineHeaderBytes;
  if (Wire().Read(std::span{header}.first(bytes)) == 0) return 0;
  return Get(header, block::kStx) == kStx ? 1 : 0;
}

std::uint32_t StdScanCmd::ReadLines(std::uint32_t bytes) {
  receivedBytes_ = 0;
  if (bytes > blockCapacity_) return Fail(kTransferFailed);
  if (Wire().Read({receiveBuffer_.get() + kDataStart, bytes}) == 0) return 0;
  receivedBytes_ = bytes;
  return 1;
}

std::uint32_t StdScanCmd::AnswerBlock(std::uint8_t blockStatus, std::uint32_t lines) {
  if (status::IsSet(blockStatus, block::kDisarm)) acquireArmed_ = 0;
  ackPending_ = aborting_ == 0 ? 1 : 0;
  linesReceived_ += lines;
  if (SendAck(aborting_ != 0 ? kCan : kAck) == 0) return 0;
  if (aborting_ != 0 && IsFeederSelected()) EjectPage();
  return 1;
}

std::uint32_t StdScanCmd::GetScanLine() {
  const TraceScope trace{"Scmdnt::GetScanLine"};
  if (fillWhite_ != 0) aborting_ = 1;
  if (NextScanStep() == 0) return 0;
  std::uint32_t end = receivedBytes_;
  if (fillWhite_ != 0) {
    const std::uint32_t filled = std::min(lineBytes_, blockCapacity_ - lineOffset_);
    std::memset(receiveBuffer_.get() + kDataStart + lineOffset_, kWhite, filled);
    end = std::max(end, lineOffset_ + filled);
  }
  PointAtLine(end);
  return 1;
}

// The planes of the palette type lie one after another in the raw line, each as long as half the
// line that was asked for. The line reaches to `end` of what is in the block.
void StdScanCmd::PointAtLine(std::uint32_t end) {
  const std::span<const std::uint8_t> data{receiveBuffer_.get() + kDataStart, end};
  const auto from = [data](std::size_t offset) {
    return data.subspan(std::min(offset, data.size()));
  };
  const std::size_t planeBytes = sentWidth_ / 2 + sentWidth_ % 2;
  line_.plane0 = from(lineOffset_);
  line_.plane1 = from(lineOffset_ + planeBytes);
  line_.plane2 = from(lineOffset_ + 2 * planeBytes);
  line_.pixelCount = static_cast<std::int32_t>(pixelType_ == kLineArt ? lineLength_ : areaWidth_);
}

}  // namespace pmddb832
