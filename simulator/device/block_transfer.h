#pragma once

#include <cstdint>
#include <optional>

#include "simulator/device/line_source.h"
#include "simulator/device/reply_queue.h"
#include "simulator/faults/defects.h"

namespace simulator {

// One page on its way in blocks of lines. The driver answers every block but the last one, which
// ends the transfer. The families say what stands in front of the lines and behind them, and what
// a block that fails looks like.
class BlockTransfer {
 public:
  struct Manner {
    std::uint32_t linesPerBlock = 1;
    bool emptyLast = false;  // a page of whole blocks ends with a block of no lines
    // Nothing tells the driver that a block is the last one, and it answers that one too.
    bool lastUnmarked = false;
    bool fromFeeder = false;
    // Lines are cut to so many bytes, or filled with FF.
    std::optional<std::uint32_t> lineBytes = std::nullopt;
  };

  virtual ~BlockTransfer() = default;
  BlockTransfer(const BlockTransfer&) = delete;
  BlockTransfer& operator=(const BlockTransfer&) = delete;

  // Puts the next piece of the current block into the queue. False when the block is out.
  bool Send(ReplyQueue& replies);

  // The driver's answer to the block is awaited.
  bool AwaitsAnswer() const { return state_ == State::kBlockSent; }
  std::uint32_t BlockNumber() const { return block_; }

  // The block was acknowledged: the next one begins, if there is one.
  void Continue();

  bool InLastBlock() const { return block_ == fullBlocks_; }

  // The last byte was sent, or the transfer broke off.
  bool Over() const { return state_ == State::kOver; }
  bool Jammed() const { return jammed_; }

  // The transfer broke off with an error that stays.
  bool EndedFatally() const { return Over() && defects.fatalAtBlock == block_; }

 protected:
  BlockTransfer(LineSource source, const Manner& manner, const Defects& defectsOfTheScanner);

  // Bytes of the current block between what stands in front of the lines and behind them.
  virtual std::uint64_t DataBytes() const = 0;
  virtual void PutFront(ReplyQueue&) {}
  virtual void PutBehind(ReplyQueue&) {}

  std::uint32_t LineBytes() const { return lineBytes_; }
  std::uint32_t FullBlocks() const { return fullBlocks_; }
  std::uint32_t LinesPerFullBlock() const { return linesPerBlock_; }
  std::uint32_t LinesOfLastBlock() const;

  // The current block is the last one, and the driver learns it.
  bool IsMarkedLast() const { return InLastBlock() && !lastUnmarked_; }

  // The current block does not end well. A page jams in it.
  bool BlockFails() const;
  bool JamsInBlock() const;
  void Jam() { jammed_ = true; }

  const Defects defects;

 private:
  enum class State {
    kBeginning,  // nothing of the block was sent; its front leaves it
    kSending,    // bytes of the block are missing; the last one leaves it
    kBlockSent,  // the block is out; the driver's answer leaves it
    kOver,       // nothing more comes
  };

  void Begin();
  void PutLines(ReplyQueue& replies);
  void PutLine(ReplyQueue& replies);
  void PutFiller(ReplyQueue& replies);
  void End(ReplyQueue& replies);

  LineSource lines_;
  const std::uint32_t lineBytes_;
  const std::uint32_t linesPerBlock_;
  const std::uint32_t fullBlocks_;
  const bool lastUnmarked_;
  const std::optional<std::uint32_t> jamLine_;
  State state_ = State::kBeginning;
  std::uint32_t block_ = 0;
  std::uint32_t line_ = 0;          // the next one of the area
  std::uint32_t linesInBlock_ = 0;  // still to send
  std::uint64_t bytesInBlock_ = 0;  // still to send, without what stands behind the lines
  bool jammed_ = false;
};

}  // namespace simulator
