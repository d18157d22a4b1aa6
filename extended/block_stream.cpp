#include "extended/block_stream.h"

#include <algorithm>
#include <cstring>

#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "wire/document_source.h"
#include "wire/protocol_bytes.h"

namespace pmddb832 {
namespace {

constexpr int kWhite = 0xFF;

}  // namespace

bool ExtBlockStream::Open() {
  return buffer_.Allocate(kDataBufferBytes);
}

void ExtBlockStream::Close() {
  buffer_.Release();
}

void ExtBlockStream::SetUp() {
  ++setUpNumber_;
  state_ = State::kSetUp;
  blocksRead_ = 0;
  linesDelivered_ = 0;
}

bool ExtBlockStream::IsStarted() const {
  return state_ != State::kSetUp && state_ != State::kCancelledSetUp;
}

bool ExtBlockStream::IsOver() const {
  return state_ == State::kComplete || state_ == State::kCancelled;
}

bool ExtBlockStream::IsCancelled() const {
  return state_ == State::kCancelledSetUp || state_ == State::kCancelling ||
         state_ == State::kCancelled;
}

void ExtBlockStream::Start(const TransferHeader& header) {
  blockBytes_ = Get(header, transfer::kBlockBytes);
  fullBlocks_ = Get(header, transfer::kFullBlocks);
  lastBlockBytes_ = Get(header, transfer::kLastBlockBytes);
  if (!IsStarted()) state_ = IsCancelled() ? State::kCancelling : State::kReceiving;
}

void ExtBlockStream::Cancel() {
  linesDelivered_ = 0;
  if (IsOver()) {
    state_ = State::kCancelled;
  } else {
    state_ = IsStarted() ? State::kCancelling : State::kCancelledSetUp;
  }
}

bool ExtBlockStream::NextLines(GeneralCmd& scanner, Call& call, const ExtScanPlan& plan,
                               std::uint32_t most, ScanLines& lines) {
  const TraceScope trace{"Extcmd::GetScanData"};
  if (!HasBuffer() || plan.linesPerBlock == 0) return scanner.Fail(kTransferFailed);
  if (linesDelivered_ % plan.linesPerBlock == 0) {
    lineOffset_ = 0;
    if (!IsOver() && !ReceiveBlock(scanner, call)) return false;
  } else {
    lineOffset_ += plan.rawLineBytes;
  }
  PointAtLine(plan, lines.first);
  lines.lineBytes = plan.rawLineBytes;
  lines.count = LinesAtHand(plan, lines.first.plane0.size(), most);
  lineOffset_ += (lines.count - 1) * plan.rawLineBytes;
  return true;
}

// Lines from the one under the cursor on, of which `bytes` are left, that lie whole in the block
// and in the area. With a log each line is told of.
std::uint32_t ExtBlockStream::LinesAtHand(const ExtScanPlan& plan, std::size_t bytes,
                                          std::uint32_t most) const {
  if (platform::currentLog != nullptr || linesDelivered_ >= plan.linesToScan) return 1;
  const std::uint32_t inBlock = plan.linesPerBlock - linesDelivered_ % plan.linesPerBlock;
  const std::uint32_t inArea = plan.linesToScan - linesDelivered_;
  return WholeLines(bytes, plan.rawLineBytes, std::min({most, inBlock, inArea}));
}

bool ExtBlockStream::ReceiveBlock(GeneralCmd& scanner, Call& call) {
  const std::uint32_t setUp = setUpNumber_;
  const bool last = blocksRead_ >= fullBlocks_;
  const std::uint32_t bytes = last ? lastBlockBytes_ : blockBytes_;
  receivedBytes_ = 0;
  if (bytes >= kDataBufferBytes || !buffer_.Fill(*scanner.Wire(), call, 0, bytes + 1)) {
    return scanner.Fail(kTransferFailed);
  }
  if (setUpNumber_ != setUp) return scanner.Fail(kTransferFailed);
  receivedBytes_ = bytes;
  if ((buffer_.Data()[bytes] & transfer::kError) != 0) return FailForBlock(scanner, call);
  const bool ends = last || IsCancelled();
  const bool answered = last || AnswerBlock(scanner, call);
  // The host may have closed the scanner, or set another scan up, out of its device.
  if (!answered || !HasBuffer() || setUpNumber_ != setUp) return scanner.Fail(kTransferFailed);
  if (ends) state_ = IsCancelled() ? State::kCancelled : State::kComplete;
  ++blocksRead_;
  return true;
}

bool ExtBlockStream::FailForBlock(GeneralCmd& scanner, Call& call) {
  const std::uint32_t cause = scanner.GetOptionStatus(call, nullptr, call.settings.docFeedOption);
  return scanner.Fail(cause == kScannerError ? kTransferFailed : static_cast<ErrorCode>(cause));
}

bool ExtBlockStream::AnswerBlock(GeneralCmd& scanner, Call& call) {
  if (!IsCancelled()) return scanner.SendAck(call, kAck) != 0;
  if (scanner.SendAck(call, kCan) == 0) return false;
  const ScannerSettings& settings = call.settings;
  if (settings.scanSource != 0 && settings.docFeedOption == kFeeder) scanner.EjectPage(call);
  return true;
}

// Lines below the area that the scanner sends are white. The line reaches to the end of what was
// received, because a conversion may read beyond it.
void ExtBlockStream::PointAtLine(const ExtScanPlan& plan, ScanLine& line) {
  std::uint32_t end = receivedBytes_;
  if (linesDelivered_ >= plan.linesToScan &&
      std::uint64_t{lineOffset_} + plan.rawLineBytes <= kDataBufferBytes) {
    std::memset(buffer_.Data() + lineOffset_, kWhite, plan.rawLineBytes);
    end = std::max(end, lineOffset_ + plan.rawLineBytes);
  }
  const std::uint32_t start = std::min(lineOffset_, end);
  line.plane0 = {buffer_.Data() + start, end - start};
  line.pixelCount =
      static_cast<std::int32_t>(plan.pixelType == kLineArt ? plan.rawLineBytes : plan.width);
}

}  // namespace pmddb832
