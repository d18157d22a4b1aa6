#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "fuzz/conversation.h"
#include "fuzz/scanner_replies.h"
#include "transport/raw_device.h"
#include "wire/command_table.h"

namespace pmddb832::fuzz {

// A scanner that answers as its protocol wants it, with counts, lengths and acknowledges that are
// right, but where a fault of the conversation says otherwise. Of an image it sends the first
// bytes of each block; the rest stays as the reader's buffer was. A read for more than a reply
// holds gets what there is. It stops the program where one call of the host makes more transfers
// than any call needs.
class FuzzScanner final : public RawDevice {
 public:
  // The conversation must outlive the scanner. `callWithin` is what a fault may run.
  FuzzScanner(const Conversation& conversation, Family family, void (*callWithin)());

  // To be called in front of each call of the host.
  void NextCall() { transfers_ = 0; }
  // From now on it departs from nothing, and makes no call.
  void ForgetFaults() { faults_.count = 0; }

  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) override;
  std::int32_t RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) override;

 private:
  // The fault that lies in wait for the moment, if one does now; it is used up then.
  const Fault* Meet(Moment moment);
  bool BeginTransfer(Moment moment);
  void MeetInReply();
  void HeedCount();
  void Damage(const Fault& fault, std::span<std::uint8_t> bytes, std::size_t place);

  void TakeWritten(std::span<const std::uint8_t> bytes);
  void TakeCommand(std::uint8_t prefix, std::uint8_t letter);
  void TakeParameters(std::span<const std::uint8_t> bytes);
  void TakeExtendedParameters(std::span<const std::uint8_t> bytes);
  void TakeStandardParameters(std::span<const std::uint8_t> bytes);
  void TakeControl(std::uint8_t code);
  void SendBlockHeader();

  void ReadReply(std::span<std::uint8_t> buffer);
  void ReadBlock(std::span<std::uint8_t> buffer);

  const Conversation& conversation_;
  const Family family_;
  void (*const callWithin_)();
  decltype(Conversation::faults) faults_;  // with what is left to be skipped
  std::size_t transfers_ = 0;
  std::size_t readsToFailure_ = 0;  // less one; 0 for none
  bool gone_ = false;

  Reply reply_;
  const CommandShape* command_ = nullptr;  // the last one
  std::size_t replyRead_ = 0;
  std::uint8_t letter_ = 0;  // whose parameters are awaited; 0 for none
  ScanRequest request_;
  bool sends_ = false;           // an image is under way
  std::uint32_t linesLeft_ = 0;  // of the image, in the standard set
};

}  // namespace pmddb832::fuzz
