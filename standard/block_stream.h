#pragma once

#include <cstdint>
#include <optional>

#include "imaging/scan_line.h"
#include "imaging/scan_plan.h"
#include "standard/scanner_facts.h"
#include "transport/general_cmd.h"
#include "transport/receive_buffer.h"
#include "wire/block_header.h"

namespace pmddb832 {

// The transfer of an image from a standard scanner: receives it block by block and hands out its
// lines.
class StdBlockStream {
 public:
  // What is true, and what leaves it. Begin leaves every state for kReceiving.
  enum class State : std::uint8_t {
    kIdle,        // no scan was begun; Cancel
    kReceiving,   // a scan was begun, if not started: blocks come and are acknowledged; End, Cancel
    kCancelling,  // the next block is answered with CAN, unless it is the last one; End
    kEnded,       // the last block has come, or the scanner was opened anew; Cancel
    kCancelled,   // no block comes any more: the first line of the one received repeats
  };

  // The connection begins, or ends. No buffer is held then.
  void Open();
  void Close() { buffer_.Release(); }

  // A scan was set up: its first band begins it.
  void SetUp();
  // Tells one set-up from the next.
  std::uint32_t SetUpNumber() const { return setUpNumber_; }
  bool IsArmed() const { return armed_; }  // false when the scanner wants a set-up first

  // Makes the receive buffer for a host buffer of `bufferBytes`; a `fresh` one has the usual size
  // if there is memory for it. False without memory, or with kTooLarge.
  [[nodiscard]] bool Prepare(GeneralCmd& scanner, const ScanPlan& plan, bool fresh,
                             std::uint32_t bufferBytes);

  // The scanner is about to be started. The scan is active from here on, also when the start
  // fails: an abort then goes on to the next block and cancels it.
  void Begin();
  // Chooses blocks of one line, or of several, and says of how many: up to 255, 0 when not one
  // fits.
  std::uint32_t ChooseBlocks(bool severalLines, const ScanPlan& plan);
  // The header that came with the start: that of the first block where blocks have several lines.
  void TakeStartHeader(const std::optional<BlockHeader>& header) { startHeader_ = header; }
  // The scanner sends no more.
  void End();
  // The scanner was started: no line of a block is left.
  void ForgetBlock();

  bool IsActive() const { return state_ == State::kReceiving || state_ == State::kCancelling; }
  bool IsCancelled() const { return state_ == State::kCancelled || state_ == State::kCancelling; }

  // The next block, if one comes, is cancelled.
  void Cancel();
  // Likewise, and all raw lines up to the next set-up are white.
  void Abort();

  // Moves to the next line, and receives the next block where the current one is used up. False
  // when no line came; kTransferFailed when there is no room for it, or the scan was overtaken.
  bool NextScanStep(GeneralCmd& scanner, Call& call, const StdScannerFacts& facts);

  // The same, then on over those that can be converted with it, up to `most` in all; describes
  // them.
  [[nodiscard]] bool GetScanLines(GeneralCmd& scanner, Call& call, const StdScannerFacts& facts,
                                  const ScanPlan& plan, std::uint32_t most, ScanLines& lines);

 private:
  struct Block {
    std::uint16_t lines = 0;
    std::uint16_t nextLine = 0;       // lines handed out
    std::uint32_t lineBytes = 0;      // as the scanner says
    std::uint32_t receivedBytes = 0;  // of the block last received
  };

  bool Allocate(const ScanPlan& plan);
  bool ReceiveBlock(GeneralCmd& scanner, Call& call, const StdScannerFacts& facts);
  bool ReadHeader(GeneralCmd& scanner, Call& call, BlockHeader& header);
  bool ReadLines(GeneralCmd& scanner, Call& call, std::uint32_t bytes);
  bool AnswerBlock(GeneralCmd& scanner, Call& call, const StdScannerFacts& facts);
  std::uint32_t WhitenLine(std::uint32_t lineBytes);
  void PointAtLine(const ScanPlan& plan, std::uint32_t end, ScanLine& line);
  std::uint32_t LinesAtHand(std::size_t bytes, std::uint32_t most) const;

  ReceiveBuffer buffer_;           // lines start some bytes into it
  std::uint32_t receiveSize_ = 0;  // what the lines per block are computed from
  std::uint32_t capacity_ = 0;     // largest block that the buffer holds
  State state_ = State::kIdle;
  std::uint32_t setUpNumber_ = 0;
  bool armed_ = false;
  bool white_ = false;         // lines are delivered white: the scan was aborted
  bool severalLines_ = false;  // blocks have several lines
  std::optional<BlockHeader> startHeader_;
  Block block_;
  std::uint32_t lineOffset_ = 0;  // where the line under the cursor starts in the block
};

}  // namespace pmddb832
