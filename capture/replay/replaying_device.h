#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "capture/conversation/conversation.h"
#include "capture/file/capture.h"
#include "capture/replay/difference.h"
#include "transport/raw_device.h"

namespace capture {

// Plays the device's side of a capture, and compares what the module does with it. Where the
// capture holds no bytes of image data, zeros come in their place, and its last byte.
//
// Strictly, every transfer fails after the first difference. Tolerantly it finds its way back:
// bytes that differ from a recorded block count as that block; a command that comes a little later
// in the capture skips what is in front of it; any other is answered as it is somewhere else in the
// capture, and reads that are cut in another way are filled from the recorded ones in their order.
class ReplayingDevice final : public pmddb832::RawDevice {
 public:
  // Both outlive this.
  ReplayingDevice(const Capture& played, DifferenceLog& differences);

  // The transfers among the entries from `begin` to `end` are what comes in the call. When the
  // capture ends there the module may go on, but nothing is delivered any more.
  void BeginCall(const std::string& name, std::size_t begin, std::size_t end);

  // The call is over: what is left of its transfers is a difference.
  void EndCall();

  // Whether zeros were delivered for image data.
  bool HasInvented() const { return hasInvented_; }

  std::size_t Transfers() const { return transfers_; }

  // The transfers of the call that have not come yet.
  std::size_t Left() const;

  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) override;
  std::int32_t RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) override;

 private:
  using Bytes = std::span<const std::uint8_t>;

  const Transfer* TransferAt(std::size_t entry) const;
  const Transfer* Next();
  bool IsBehindTheCapture();
  void Report(const Transfer* expected, const Transfer& came);

  std::int32_t Read(std::span<std::uint8_t> buffer, std::uint32_t& delivered);
  std::int32_t ReadInAnotherWay(std::span<std::uint8_t> buffer, std::uint32_t& delivered);
  std::int32_t ReadOutOfTurn(std::span<std::uint8_t> buffer, std::uint32_t& delivered);
  template <class Condition>
  std::optional<std::size_t> FindAhead(const Condition& isIt) const;
  void SkipToRead(std::size_t length);
  std::int32_t FillFrom(std::size_t& entry, std::size_t last, std::span<std::uint8_t> buffer,
                        std::uint32_t& delivered);
  std::vector<std::uint8_t> Delivered(const Transfer& read);

  std::int32_t Write(Bytes bytes);
  std::int32_t WriteInAnotherWay(Bytes bytes, Part part);
  bool IsWriteOf(const Transfer& transfer, Bytes bytes) const;
  std::optional<std::size_t> FindWriteAnywhere(Bytes bytes) const;

  const Capture& capture_;
  DifferenceLog& log_;
  Conversation conversation_;  // as the module leads it
  std::string call_;
  std::size_t cursor_ = 0;
  std::size_t end_ = 0;
  std::size_t transfers_ = 0;
  std::vector<std::uint8_t> rest_;  // of a recorded read of which the module took a part
  // Behind a write that does not come in the call: where its answer is, or the end of the capture
  // when there is none.
  std::optional<std::size_t> outOfTurn_;
  bool hasInvented_ = false;
};

}  // namespace capture
