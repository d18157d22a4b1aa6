#pragma once

#include <cstdint>
#include <vector>

#include "simulator/device/block_transfer.h"

namespace simulator {

// A page in the blocks of the standard command set, each with a header in front of it: status,
// bytes per line and, in block mode, number of lines. In line mode every block is one line. A block
// that fails has no lines; in line mode, where its header cannot say so, it begins with NAK.
class StandardTransfer final : public BlockTransfer {
 public:
  enum class Mode { kLines, kBlocks };

  // A line has at most 65535 bytes.
  StandardTransfer(LineSource source, const Manner& manner, Mode transferMode,
                   const Defects& defectsOfTheScanner)
      : BlockTransfer(std::move(source), manner, defectsOfTheScanner), mode_(transferMode) {}

  // The answer to the start: in line mode a header that tells the bytes per line, in block mode
  // that of the first block.
  std::vector<std::uint8_t> StartHeader() const {
    return mode_ == Mode::kLines ? HeaderOf(0, 1) : Header();
  }

 protected:
  std::uint64_t DataBytes() const override;
  void PutFront(ReplyQueue& replies) override;

 private:
  std::vector<std::uint8_t> Header() const;
  std::vector<std::uint8_t> HeaderOf(std::uint8_t status, std::uint32_t lineCount) const;
  std::uint32_t AnnouncedLines() const;

  const Mode mode_;
};

}  // namespace simulator
