#include "simulator/device/block_transfer.h"

#include <algorithm>
#include <utility>

#include "simulator/device/line_format.h"

namespace simulator {
namespace {

constexpr std::uint8_t kFiller = 0xFF;

std::uint32_t CountFullBlocks(std::uint32_t height, const BlockTransfer::Manner& manner) {
  return (manner.emptyLast ? height : height - 1) / manner.linesPerBlock;
}

}  // namespace

BlockTransfer::BlockTransfer(LineSource source, const Manner& manner,
                             const Defects& defectsOfTheScanner)
    : defects(defectsOfTheScanner),
      lines_(std::move(source)),
      lineBytes_(manner.lineBytes.value_or(simulator::LineBytes(lines_.Request()))),
      linesPerBlock_(manner.linesPerBlock),
      fullBlocks_(CountFullBlocks(lines_.Request().height, manner)),
      lastUnmarked_(manner.lastUnmarked),
      jamLine_(manner.fromFeeder ? defects.jamAtLine : std::nullopt) {}

std::uint32_t BlockTransfer::LinesOfLastBlock() const {
  return lines_.Request().height - fullBlocks_ * linesPerBlock_;
}

bool BlockTransfer::JamsInBlock() const {
  const std::uint32_t first = block_ * linesPerBlock_;
  const std::uint32_t count = InLastBlock() ? LinesOfLastBlock() : linesPerBlock_;
  return jamLine_ && *jamLine_ >= first && *jamLine_ - first < count;
}

bool BlockTransfer::BlockFails() const {
  return defects.errorAtBlock == block_ || defects.fatalAtBlock == block_ || JamsInBlock();
}

bool BlockTransfer::Send(ReplyQueue& replies) {
  if (state_ == State::kBeginning) {
    Begin();
    PutFront(replies);
  } else if (state_ == State::kSending) {
    PutLines(replies);
  } else {
    return false;
  }
  if (bytesInBlock_ == 0) End(replies);
  return true;
}

void BlockTransfer::Begin() {
  state_ = State::kSending;
  linesInBlock_ = InLastBlock() ? LinesOfLastBlock() : linesPerBlock_;
  bytesInBlock_ = DataBytes();
  if (!InLastBlock()) {
    bytesInBlock_ += defects.blockLongerBy.value_or(0);
  } else {
    bytesInBlock_ -= std::min<std::uint64_t>(bytesInBlock_, defects.lastBlockShorterBy.value_or(0));
  }
}

void BlockTransfer::Continue() {
  if (InLastBlock()) {
    state_ = State::kOver;
    return;
  }
  ++block_;
  state_ = State::kBeginning;
}

// Lines as long as there are some, then filler: a defect may make a block longer than its lines.
void BlockTransfer::PutLines(ReplyQueue& replies) {
  if (linesInBlock_ > 0 && jamLine_ == line_) Jam();
  if (linesInBlock_ == 0 || jammed_) {
    PutFiller(replies);
  } else {
    PutLine(replies);
  }
}

void BlockTransfer::PutLine(ReplyQueue& replies) {
  std::vector<std::uint8_t> bytes = lines_.Line(line_++);
  bytes.resize(lineBytes_, kFiller);
  --linesInBlock_;
  const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), bytesInBlock_));
  replies.Put(std::span(bytes).first(count));
  bytesInBlock_ -= count;
}

void BlockTransfer::PutFiller(ReplyQueue& replies) {
  constexpr std::uint64_t kAtATime = 65536;
  const std::uint64_t count = std::min(bytesInBlock_, kAtATime);
  replies.Put(static_cast<std::size_t>(count), kFiller);
  bytesInBlock_ -= count;
}

void BlockTransfer::End(ReplyQueue& replies) {
  PutBehind(replies);
  state_ = IsMarkedLast() || BlockFails() ? State::kOver : State::kBlockSent;
}

}  // namespace simulator
