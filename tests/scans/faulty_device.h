#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "transport/raw_device.h"

namespace pmddb832::tests {

// What goes wrong with one transfer of a conversation.
enum class FaultKind {
  kFails,           // the transfer fails
  kCutShort,        // a read delivers fewer bytes, with success
  kTimesOut,        // a read delivers fewer bytes, then fails
  kNak,             // an ACK comes as NAK
  kWrongFirstByte,  // a reply begins with another byte
  kGone,            // this transfer and all behind it fail
};

struct Fault {
  FaultKind kind;
  std::size_t transfer;         // counted from 0
  std::uint32_t delivered = 0;  // bytes, for kCutShort and kTimesOut
};

// Passes transfers on to another device, and brings one fault into them.
class FaultyDevice final : public RawDevice {
 public:
  FaultyDevice(StillImageDevice& sound, std::optional<Fault> fault)
      : sound_(sound), fault_(fault) {}

  // Bytes asked for by each read so far, 0 for a write.
  const std::vector<std::uint32_t>& Transfers() const { return transfers_; }

  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) override;
  std::int32_t RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) override;

 private:
  bool Strikes(FaultKind kind) const;
  bool Fails() const { return Strikes(FaultKind::kFails) || Strikes(FaultKind::kGone); }

  StillImageDevice& sound_;
  std::optional<Fault> fault_;
  std::vector<std::uint32_t> transfers_;
};

}  // namespace pmddb832::tests
