#include "simulator/device/block_transfer.h"

#include <algorithm>
#include <utility>

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
      lines(std::move(source)),
      lineBytes(manner.lineBytes.value_or(simulator::LineBytes(lines.Request()))),
      linesPerBlock(manner.linesPerBlock),
      fullBlocks(CountFullBlocks(lines.Request().height, manner)),
      lastUnmarked(manner.lastUnmarked),
      jamLine(manner.fromFeeder ? defects.jamAtLine : std::nullopt) {}

std::uint32_t BlockTransfer::LinesOfLastBlock() const {
  return lines.Request().height - fullBlocks * linesPerBlock;
}

bool BlockTransfer::JamsInBlock() const {
  const std::uint32_t first = block * linesPerBlock;
  const std::uint32_t count = InLastBlock() ? LinesOfLastBlock() : linesPerBlock;
  return jamLine && *jamLine >= first && *jamLine - first < count;
}

bool BlockTransfer::BlockFails() const {
  return defects.errorAtBlock == block || defects.fatalAtBlock == block || JamsInBlock();
}

bool BlockTransfer::Send(ReplyQueue& replies) {
  if (state == State::kBeginning) {
    Begin();
    PutFront(replies);
  } else if (state == State::kSending) {
    PutLines(replies);
  } else {
    return false;
  }
  if (bytesInBlock == 0) End(replies);
  return true;
}

void BlockTransfer::Begin() {
  state = State::kSending;
  linesInBlock = InLastBlock() ? LinesOfLastBlock() : linesPerBlock;
  bytesInBlock = DataBytes();
  if (!InLastBlock()) {
    bytesInBlock += defects.blockLongerBy.value_or(0);
  } else {
    bytesInBlock -= std::min<std::uint64_t>(bytesInBlock, defects.lastBlockShorterBy.value_or(0));
  }
}

void BlockTransfer::Continue() {
  if (InLastBlock()) {
    state = State::kOver;
    return;
  }
  ++block;
  state = State::kBeginning;
}

// Lines as long as there are some, then filler: a defect may make a block longer than its lines.
void BlockTransfer::PutLines(ReplyQueue& replies) {
  if (linesInBlock > 0 && jamLine == line) Jam();
  if (linesInBlock == 0 || jammed) {
    PutFiller(replies);
  } else {
    PutLine(replies);
  }
}

void BlockTransfer::PutLine(ReplyQueue& replies) {
  std::vector<std::uint8_t> bytes = lines.Line(line++);
  bytes.resize(lineBytes, kFiller);
  --linesInBlock;
  const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), bytesInBlock));
  replies.Put(std::span(bytes).first(count));
  bytesInBlock -= count;
}

void BlockTransfer::PutFiller(ReplyQueue& replies) {
  constexpr std::uint64_t kAtATime = 65536;
  const std::uint64_t count = std::min(bytesInBlock, kAtATime);
  replies.Put(static_cast<std::size_t>(count), kFiller);
  bytesInBlock -= count;
}

void BlockTransfer::End(ReplyQueue& replies) {
  PutBehind(replies);
  state = IsMarkedLast() || BlockFails() ? State::kOver : State::kBlockSent;
}

}  // namespace simulator
