#include "simulator/extended/extended_transfer.h"

#include "simulator/device/little_endian.h"
#include "simulator/device/protocol_bytes.h"

namespace simulator {

std::uint32_t ExtendedTransfer::FullBytes() const {
  return defects.announcedBlockBytes.value_or(LinesPerFullBlock() * LineBytes());
}

std::uint32_t ExtendedTransfer::LastBytes() const {
  return defects.announcedLastBlockBytes.value_or(LinesOfLastBlock() * LineBytes());
}

std::array<std::uint8_t, transfer_header::kBytes> ExtendedTransfer::Header() const {
  std::array<std::uint8_t, transfer_header::kBytes> header{kStx};
  Put32(header, transfer_header::kBlockBytes, FullBytes());
  Put32(header, transfer_header::kFullBlocks, FullBlocks());
  Put32(header, transfer_header::kLastBlockBytes, LastBytes());
  return header;
}

void ExtendedTransfer::PutBehind(ReplyQueue& replies) {
  replies.Put(BlockFails() ? kTransferError : std::uint8_t{0});
}

}  // namespace simulator
