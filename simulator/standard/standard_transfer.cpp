#include "simulator/standard/standard_transfer.h"

#include "simulator/device/little_endian.h"
#include "simulator/device/protocol_bytes.h"
#include "simulator/standard/standard_blocks.h"

namespace simulator {

std::uint32_t StandardTransfer::AnnouncedLines() const {
  if (BlockFails()) return 0;
  if (InLastBlock()) return LinesOfLastBlock();
  return defects.announcedLines.value_or(LinesPerFullBlock()) & 0xFFFF;
}

std::uint64_t StandardTransfer::DataBytes() const {
  return std::uint64_t{AnnouncedLines()} * LineBytes();
}

std::vector<std::uint8_t> StandardTransfer::Header() const {
  const std::uint8_t success = IsMarkedLast() ? block_header::kLast : 0;
  return HeaderOf(BlockFails() ? block_header::kError : success, AnnouncedLines());
}

std::vector<std::uint8_t> StandardTransfer::HeaderOf(std::uint8_t status,
                                                     std::uint32_t lineCount) const {
  std::vector<std::uint8_t> header{kStx, status};
  Append16(header, LineBytes());
  Append16(header, lineCount);
  return header;
}

void StandardTransfer::PutFront(ReplyQueue& replies) {
  std::vector<std::uint8_t> header = Header();
  if (mode_ == Mode::kLines) {
    header.resize(block_header::kLineModeBytes);
    if (BlockFails()) header[0] = kNak;
  }
  replies.Put(header);
  if (JamsInBlock()) Jam();
}

}  // namespace simulator
