#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "capture/conversation/conversation.h"
#include "capture/file/capture.h"
#include "capture/trace/usb_transfers.h"

namespace capture {

// Makes the transfers of a bus into those of a capture: a read for each acknowledge, reply, header
// and block, and a write for each command and parameter block, however the host's system cut them.
// Pieces are joined where the protocol waits for more and the piece in front did not end the
// transfer: a bus moves whole packets up to the last one. What nothing asked for stays as it is.
class TransferCutter {
 public:
  // They outlive this.
  explicit TransferCutter(std::span<const UsbTransfer> busTransfers) : bus_(busTransfers) {}

  std::vector<Transfer> Cut();

  std::uint64_t Joined() const { return joined_; }  // transfers of the bus that went into others
  std::uint64_t Split() const { return split_; }    // that were cut
  std::uint64_t CutShort() const { return cutShort_; }  // of which the trace kept only a part
  // Whether the first one is anything but a command.
  bool BeginsInside() const { return beginsInside_; }
  // Whether it begins with a command that does not ask what the scanner is.
  bool LacksIdentification() const { return lacksIdentification_; }
  // What shows that something is missing, behind the first command: transfers that nothing asked
  // for, or for less; and answers or parameters that were waited for when something else was sent.
  std::uint64_t Unasked() const { return unasked_; }
  std::uint64_t Unanswered() const { return unanswered_; }
  // Whether more is waited for behind the last one.
  bool EndsInside() const { return AwaitsMore(); }

 private:
  std::size_t TakeWrite(std::size_t first);
  std::size_t TakeRead(std::size_t first);
  bool TakeInPieces(const UsbTransfer& read);
  std::size_t PiecesOfWrite(std::size_t first) const;
  std::size_t PiecesOfRead(std::size_t first, std::uint64_t expected) const;
  bool IsWriteAt(std::size_t place) const;
  bool AwaitsMore() const;
  void Put(Transfer transfer);

  std::span<const UsbTransfer> bus_;
  Conversation conversation_;
  std::vector<Transfer> cut_;
  std::uint64_t joined_ = 0;
  std::uint64_t split_ = 0;
  std::uint64_t cutShort_ = 0;
  std::uint64_t unasked_ = 0;
  std::uint64_t unanswered_ = 0;
  bool beginsInside_ = false;
  bool lacksIdentification_ = false;
};

}  // namespace capture
