#pragma once

#include <cstdint>
#include <span>

#include "transport/call.h"

namespace pmddb832 {

// The elementary acts of the protocol, over the channel of the call. Results are 1 for success and
// 0 for failure; each act is one attempt, without retry or time limit.
class Transport {
 public:
  virtual ~Transport() = default;

  // The transport's own error code: it keeps none.
  virtual std::uint32_t ErrorCode() const { return 0; }

  // Sends one control byte; a CAN must be acknowledged by the scanner.
  virtual std::uint32_t SendAck(Call& call, std::uint8_t code) = 0;
  // Reads one byte: 1 when it is ACK.
  virtual std::uint32_t CheckAck(Call& call) = 0;
  // Send a prefix and a command letter in one transfer of two bytes.
  virtual std::uint32_t SendEscCode(Call& call, std::uint8_t letter) = 0;
  virtual std::uint32_t SendFSCode(Call& call, std::uint8_t letter) = 0;
  // Move exactly that many bytes.
  virtual std::uint32_t Read(Call& call, std::span<std::uint8_t> bytes) = 0;
  virtual std::uint32_t Write(Call& call, std::span<const std::uint8_t> bytes) = 0;
  // Send the feed or the eject byte, which the scanner must acknowledge.
  virtual std::uint32_t FeedPaper(Call& call) = 0;
  virtual std::uint32_t EjectPage(Call& call) = 0;
};

// The transport of every scanner. Without a channel every transfer fails.
class LocalType final : public Transport {
 public:
  std::uint32_t SendAck(Call& call, std::uint8_t code) override;
  std::uint32_t CheckAck(Call& call) override;
  std::uint32_t SendEscCode(Call& call, std::uint8_t letter) override;
  std::uint32_t SendFSCode(Call& call, std::uint8_t letter) override;
  std::uint32_t Read(Call& call, std::span<std::uint8_t> bytes) override;
  std::uint32_t Write(Call& call, std::span<const std::uint8_t> bytes) override;
  std::uint32_t FeedPaper(Call& call) override;
  std::uint32_t EjectPage(Call& call) override;

 private:
  std::uint32_t SendControlByte(Call& call, std::uint8_t code);
};

}  // namespace pmddb832
