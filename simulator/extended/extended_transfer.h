#pragma once

#include <array>
#include <cstdint>

#include "simulator/device/block_transfer.h"
#include "simulator/extended/extended_blocks.h"

namespace simulator {

// A page in the blocks of the extended command set: they are announced together, and each has a
// status byte behind it. In the block in which a page jams the rest is white.
class ExtendedTransfer final : public BlockTransfer {
 public:
  ExtendedTransfer(LineSource source, const Manner& manner, const Defects& defectsOfTheScanner)
      : BlockTransfer(std::move(source), manner, defectsOfTheScanner) {}

  // The 14 bytes that announce the blocks.
  std::array<std::uint8_t, transfer_header::kBytes> Header() const;

 protected:
  std::uint64_t DataBytes() const override { return InLastBlock() ? LastBytes() : FullBytes(); }
  void PutBehind(ReplyQueue& replies) override;

 private:
  std::uint32_t FullBytes() const;
  std::uint32_t LastBytes() const;
};

}  // namespace simulator
