#include "capture/conversation/picture_blocks.h"

#include <algorithm>

#include "wire/block_header.h"
#include "wire/transfer_header.h"

namespace capture {
namespace {

using Bytes = std::span<const std::uint8_t>;
namespace block_of = pmddb832::block;
namespace transfer = pmddb832::transfer;

template <std::unsigned_integral T, std::size_t offset>
std::uint32_t NumberIn(Bytes bytes, pmddb832::Field<T, offset>) {
  if (bytes.size() < offset + sizeof(T)) return 0;
  return pmddb832::GetLittleEndian<T>(bytes.subspan<offset, sizeof(T)>());
}

std::uint32_t StandardCount(const AnnouncedScan& scan) {
  if (!scan.linesAtOnce) return scan.height;
  if (scan.linesPerBlock == 0) return 0;
  return (scan.height + scan.linesPerBlock - 1) / scan.linesPerBlock;
}

}  // namespace

void AnnouncedScan::Note(const pmddb832::CommandShape& command, Bytes sent) {
  namespace standard = pmddb832::standard_parameter;
  if (command.prefix == pmddb832::kFs && command.letter == pmddb832::fs::kParameters) {
    linesPerBlock = NumberIn(sent, pmddb832::parameter::kLinesPerBlock);
    height = NumberIn(sent, pmddb832::parameter::kAreaHeight);
  } else if (command.letter == pmddb832::esc::kArea) {
    height = NumberIn(sent, standard::kFourthWord);
    startIsRepeated = false;
  } else if (command.letter == pmddb832::esc::kLinesPerBlock) {
    linesPerBlock = NumberIn(sent, standard::kByte);
    linesAtOnce = true;
  }
}

PictureBlocks PictureBlocks::Extended(const AnnouncedScan& scan, Bytes header) {
  PictureBlocks blocks(scan, true);
  blocks.fullBlockBytes_ = NumberIn(header, transfer::kBlockBytes);
  blocks.fullBlocks_ = NumberIn(header, transfer::kFullBlocks);
  blocks.lastBlockBytes_ = NumberIn(header, transfer::kLastBlockBytes);
  blocks.block_.count = blocks.fullBlocks_ + (blocks.lastBlockBytes_ != 0 ? 1 : 0);
  blocks.block_.statusNames = transfer::kStatusNames;
  const bool isGood = header.size() >= sizeof(pmddb832::TransferHeader) &&
                      header[0] == pmddb832::kStx && (header[1] & transfer::kError) == 0;
  if (!isGood) return blocks;
  blocks.next_ = Step::kBlock;
  blocks.Announce();
  return blocks;
}

PictureBlocks PictureBlocks::Standard(const AnnouncedScan& scan, Bytes header) {
  PictureBlocks blocks(scan, false);
  blocks.block_.count = StandardCount(scan);
  blocks.block_.statusNames = block_of::kStatusNames;
  const bool isRefused =
      header.size() > 1 && (header[0] != pmddb832::kStx || (header[1] & block_of::kError) != 0);
  if (isRefused) return blocks;
  blocks.next_ = Step::kHeader;
  if (scan.linesAtOnce && !header.empty()) blocks.TakeHeader(header);
  return blocks;
}

// Extended blocks have no header of their own: the transfer header and the parameters tell of them.
void PictureBlocks::Announce() {
  const bool isLast = block_.number > fullBlocks_;
  block_.announcedBytes = isLast ? lastBlockBytes_ : fullBlockBytes_;
  const std::uint64_t linesBefore = std::uint64_t{fullBlocks_} * scan_.linesPerBlock;
  const std::uint64_t linesLeft = scan_.height - std::min<std::uint64_t>(linesBefore, scan_.height);
  block_.lines = isLast ? static_cast<std::uint32_t>(linesLeft) : scan_.linesPerBlock;
}

std::uint64_t PictureBlocks::NextBytes() const {
  if (next_ == Step::kBlock) return block_.announcedBytes + (isExtended_ ? 1 : 0);
  if (next_ != Step::kHeader) return 0;
  return scan_.linesAtOnce ? sizeof(pmddb832::BlockHeader) : block_of::kOneLineHeaderBytes;
}

void PictureBlocks::TakeHeader(Bytes header) {
  block_.status = static_cast<std::uint8_t>(NumberIn(header, block_of::kStatus));
  block_.lines = scan_.linesAtOnce ? NumberIn(header, block_of::kLines) : 1;
  block_.announcedBytes = std::uint64_t{NumberIn(header, block_of::kLineBytes)} * block_.lines;
  const bool isGood = NumberIn(header, block_of::kStx) == pmddb832::kStx && block_.lines != 0;
  next_ = isGood ? Step::kBlock : Step::kNone;
}

void PictureBlocks::TakeBlock(std::uint64_t bytes, std::uint8_t lastByte) {
  block_.bytes = isExtended_ ? bytes - 1 : bytes;
  if (isExtended_) block_.status = lastByte;
  const bool isOver = isExtended_
                          ? block_.number > fullBlocks_ || (lastByte & transfer::kError) != 0
                          : (block_.status & block_of::kLast) != 0;
  next_ = isOver ? Step::kNone : Step::kAnswer;
}

void PictureBlocks::TakeAnswer() {
  ++block_.number;
  next_ = isExtended_ ? Step::kBlock : Step::kHeader;
  if (isExtended_) Announce();
}

}  // namespace capture
