#pragma once

#include <cstdint>

#include "extended/scan_plan.h"
#include "imaging/scan_line.h"
#include "transport/general_cmd.h"
#include "transport/receive_buffer.h"
#include "wire/transfer_header.h"

namespace pmddb832 {

// The transfer of an image from an extended scanner: receives it block by block and hands out its
// lines.
class ExtBlockStream {
 public:
  // What is true, and what leaves it. A further set-up leaves every state for kSetUp.
  enum class State : std::uint8_t {
    kSetUp,           // no transfer was started; Start, Cancel
    kCancelledSetUp,  // likewise, and the host has cancelled what it will start; Start
    kReceiving,       // full blocks come and are acknowledged; the last block, Cancel
    kCancelling,      // the next full block is answered with CAN; that block, the last block
    kComplete,        // the last block has come; Cancel
    kCancelled,       // no block comes any more, and no page is ejected: the host has cancelled
  };

  // False when there is no memory for the buffer.
  [[nodiscard]] bool Open();
  void Close();
  bool HasBuffer() const { return buffer_.IsThere(); }

  // A scan was set up: forgets the transfer under way.
  void SetUp();
  // Tells one set-up from the next.
  std::uint32_t SetUpNumber() const { return setUpNumber_; }

  bool IsStarted() const;
  bool IsOver() const;
  bool IsCancelled() const;

  // The scanner accepted the transfer.
  void Start(const TransferHeader& header);

  // The host wants no more. The lines count from the first one again.
  void Cancel();

  // Moves to the next line of a transfer that was started, and receives the next block where the
  // line is its first; then on over those that can be converted with it, up to `most` in all. False
  // with the last error: kTransferFailed, or what the status of the scanner tells.
  [[nodiscard]] bool NextLines(GeneralCmd& scanner, Call& call, const ExtScanPlan& plan,
                               std::uint32_t most, ScanLines& lines);

  // Lines that were delivered to the host; the caller counts each.
  std::uint32_t LinesDelivered() const { return linesDelivered_; }
  void CountLines(std::uint32_t lines) { linesDelivered_ += lines; }

 private:
  bool ReceiveBlock(GeneralCmd& scanner, Call& call);
  bool AnswerBlock(GeneralCmd& scanner, Call& call);
  bool FailForBlock(GeneralCmd& scanner, Call& call);
  void PointAtLine(const ExtScanPlan& plan, ScanLine& line);
  std::uint32_t LinesAtHand(const ExtScanPlan& plan, std::size_t bytes, std::uint32_t most) const;

  ReceiveBuffer buffer_;  // data and status byte of the block last received
  State state_ = State::kSetUp;
  std::uint32_t setUpNumber_ = 0;
  std::uint32_t blockBytes_ = 0;
  std::uint32_t fullBlocks_ = 0;
  std::uint32_t lastBlockBytes_ = 0;
  std::uint32_t blocksRead_ = 0;
  std::uint32_t linesDelivered_ = 0;
  std::uint32_t lineOffset_ = 0;     // where the line under the cursor starts in the buffer
  std::uint32_t receivedBytes_ = 0;  // data bytes of the block last received
};

}  // namespace pmddb832
