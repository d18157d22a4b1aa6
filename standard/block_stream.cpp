#include "standard/block_stream.h"

#include <algorithm>
#include <cstring>

#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "standard/line_size.h"
#include "standard/std_commands.h"
#include "wire/protocol_bytes.h"

namespace pmddb832 {
namespace {

constexpr int kWhite = 0xFF;
constexpr std::uint32_t kUsualReceiveSize = 0xFF00;
constexpr std::uint32_t kDataStart = 10;  // of a block in the receive buffer
constexpr std::uint32_t kReceiveSlack = 16;
static_assert(kReceiveSlack >= kDataStart);
// No line that can be set up needs a hundredth of it: a longer one comes from a refused set-up.
constexpr std::uint32_t kLongestRawLine = 0x1000000;
constexpr std::uint32_t kMostLinesPerBlock = 255;

}  // namespace

void StdBlockStream::Open() {
  receiveSize_ = kUsualReceiveSize;
  buffer_.Release();
}

void StdBlockStream::SetUp() {
  ++setUpNumber_;
  white_ = false;
  armed_ = true;
}

bool StdBlockStream::Prepare(GeneralCmd& scanner, const ScanPlan& plan, bool fresh,
                             std::uint32_t bufferBytes) {
  buffer_.Release();
  if (fresh) {
    receiveSize_ = kUsualReceiveSize;
    if (Allocate(plan)) return true;
  }
  if (bufferBytes < kUsualReceiveSize) {
    const std::uint32_t lineRoom = RawLineRoom(plan.width, plan.format);
    if (lineRoom > kLongestRawLine) return scanner.Fail(kTooLarge);
    receiveSize_ = std::max(bufferBytes, lineRoom) + kDataStart;
  } else {
    receiveSize_ = std::max(receiveSize_, kUsualReceiveSize);
  }
  return Allocate(plan);
}

bool StdBlockStream::Allocate(const ScanPlan& plan) {
  block_.receivedBytes = 0;
  capacity_ = receiveSize_ * RawLineRooms(plan.pixelType, plan.format);
  return buffer_.Allocate(capacity_ + kReceiveSlack);
}

void StdBlockStream::Begin() {
  state_ = State::kReceiving;
}

std::uint32_t StdBlockStream::ChooseBlocks(bool severalLines, const ScanPlan& plan) {
  severalLines_ = severalLines;
  if (!severalLines) return 1;
  const std::uint32_t lineRoom = RawLineRoom(plan.width, plan.format);
  if (lineRoom == 0) return 0;
  return std::min((receiveSize_ - kDataStart) / lineRoom, kMostLinesPerBlock);
}

void StdBlockStream::ForgetBlock() {
  block_.lines = 0;
  block_.nextLine = 0;
}

void StdBlockStream::Cancel() {
  state_ = IsActive() ? State::kCancelling : State::kCancelled;
}

void StdBlockStream::Abort() {
  white_ = true;
  Cancel();
}

void StdBlockStream::End() {
  state_ = IsCancelled() ? State::kCancelled : State::kEnded;
}

bool StdBlockStream::NextScanStep(GeneralCmd& scanner, Call& call, const StdScannerFacts& facts) {
  const TraceScope trace{"Scmdnt::NextScanStep"};
  if (state_ == State::kCancelling) ForgetBlock();
  if (block_.nextLine == block_.lines && IsActive() && !ReceiveBlock(scanner, call, facts)) {
    return false;
  }
  if (state_ == State::kCancelled) block_.nextLine = 0;
  if (!severalLines_) {
    lineOffset_ = 0;
    block_.nextLine = 1;
    return true;
  }
  lineOffset_ = block_.nextLine * block_.lineBytes;
  if (block_.nextLine < block_.lines) ++block_.nextLine;
  return true;
}

bool StdBlockStream::ReceiveBlock(GeneralCmd& scanner, Call& call, const StdScannerFacts& facts) {
  if (!buffer_.IsThere()) return scanner.Fail(kTransferFailed);
  const std::uint32_t setUp = setUpNumber_;
  BlockHeader header{};
  if (!ReadHeader(scanner, call, header)) return false;
  const auto lines = severalLines_ ? Get(header, block::kLines) : std::uint16_t{1};
  if (lines == 0) {
    StatusReply cause;  // whatever it is, the call fails
    Scmdnt::GetStatusNoE(scanner, call, facts.level, cause);
    return false;
  }
  ForgetBlock();
  const std::uint32_t lineBytes = Get(header, block::kLineBytes);
  if (!ReadLines(scanner, call, lineBytes * lines)) return false;
  if (setUpNumber_ != setUp) return scanner.Fail(kTransferFailed);
  const std::uint8_t blockStatus = Get(header, block::kStatus);
  const bool last = status::IsSet(blockStatus, block::kLast);
  if (!last && status::IsSet(blockStatus, block::kDisarm)) armed_ = false;
  if (!last && !AnswerBlock(scanner, call, facts)) return false;
  // The host may have closed the scanner, or set another scan up, out of its device.
  if (!buffer_.IsThere() || setUpNumber_ != setUp) return scanner.Fail(kTransferFailed);
  if (last || IsCancelled()) End();
  block_.lines = lines;
  block_.lineBytes = lineBytes;
  return true;
}

// The header that came with the start is the first block's, whatever it begins with.
bool StdBlockStream::ReadHeader(GeneralCmd& scanner, Call& call, BlockHeader& header) {
  if (severalLines_ && startHeader_.has_value()) {
    header = *startHeader_;
    startHeader_.reset();
    return true;
  }
  const std::size_t bytes = severalLines_ ? header.size() : block::kOneLineHeaderBytes;
  return scanner.Wire()->Read(call, std::span{header}.first(bytes)) != 0 &&
         Get(header, block::kStx) == kStx;
}

bool StdBlockStream::ReadLines(GeneralCmd& scanner, Call& call, std::uint32_t bytes) {
  if (bytes > capacity_ || !buffer_.IsThere()) return scanner.Fail(kTransferFailed);
  const std::uint32_t changes = buffer_.Changes();
  if (!buffer_.Fill(*scanner.Wire(), call, kDataStart, bytes)) {
    return buffer_.Changes() == changes ? false : scanner.Fail(kTransferFailed);
  }
  block_.receivedBytes = bytes;
  return true;
}

bool StdBlockStream::AnswerBlock(GeneralCmd& scanner, Call& call, const StdScannerFacts& facts) {
  if (!IsCancelled()) return scanner.SendAck(call, kAck) != 0;
  if (scanner.SendAck(call, kCan) == 0) return false;
  if (facts.IsFeederSelected(call.settings.scanSource)) scanner.EjectPage(call);
  return true;
}

bool StdBlockStream::GetScanLines(GeneralCmd& scanner, Call& call, const StdScannerFacts& facts,
                                  const ScanPlan& plan, std::uint32_t most, ScanLines& lines) {
  const TraceScope trace{"Scmdnt::GetScanLine"};
  if (white_) Cancel();
  if (!NextScanStep(scanner, call, facts)) return false;
  if (!buffer_.IsThere()) return scanner.Fail(kTransferFailed);
  std::uint32_t end = block_.receivedBytes;
  if (white_) end = WhitenLine(plan.hostLineBytes);
  PointAtLine(plan, end, lines.first);
  lines.lineBytes = block_.lineBytes;
  lines.count = LinesAtHand(lines.first.plane0.size(), most);
  block_.nextLine = static_cast<std::uint16_t>(block_.nextLine + lines.count - 1);
  return true;
}

// Lines from the one under the cursor on, of which `bytes` are left, that lie whole in the block.
// With a log each line is told of.
std::uint32_t StdBlockStream::LinesAtHand(std::size_t bytes, std::uint32_t most) const {
  if (platform::currentLog != nullptr || !severalLines_ || IsCancelled()) return 1;
  const std::uint32_t behind = block_.lines - block_.nextLine;
  return WholeLines(bytes, block_.lineBytes, std::min(most, behind + 1));
}

// The line under the cursor is the first one, as behind every cancel. What the buffer then holds
// behind its first bytes is of the block that was received last.
std::uint32_t StdBlockStream::WhitenLine(std::uint32_t lineBytes) {
  const std::uint32_t filled = std::min(lineBytes, capacity_);
  std::memset(buffer_.Data() + kDataStart, kWhite, filled);
  return std::max(block_.receivedBytes, filled);
}

// The planes of the palette type lie one after another in the raw line, each as long as half the
// line that was asked for. The line reaches to `end` of what is in the block.
void StdBlockStream::PointAtLine(const ScanPlan& plan, std::uint32_t end, ScanLine& line) {
  const std::span<const std::uint8_t> data{buffer_.Data() + kDataStart, end};
  const auto from = [data](std::size_t offset) {
    return data.subspan(std::min(offset, data.size()));
  };
  line.plane0 = from(lineOffset_);
  if (plan.pixelType == kPalette) {
    const std::size_t planeBytes = plan.sentWidth / 2 + plan.sentWidth % 2;
    line.plane1 = from(lineOffset_ + planeBytes);
    line.plane2 = from(lineOffset_ + 2 * planeBytes);
  }
  line.pixelCount =
      static_cast<std::int32_t>(plan.pixelType == kLineArt ? block_.lineBytes : plan.width);
}

}  // namespace pmddb832
