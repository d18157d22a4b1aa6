#include "transport/local_type.h"

#include <array>

#include "platform/trace.h"
#include "transport/device_driver.h"
#include "wire/protocol_bytes.h"

namespace pmddb832 {

std::uint32_t LocalType::SendAck(std::uint8_t code) {
  const TraceScope trace{"Sgeneral::LocalType::SendAck"};
  if (Write({&code, 1}) == 0) return 0;
  return code == kCan ? CheckAck() : 1;
}

std::uint32_t LocalType::CheckAck() {
  const TraceScope trace{"Sgeneral::LocalType::CheckAck"};
  std::uint8_t reply = 0;
  return Read({&reply, 1}) != 0 && reply == kAck ? 1 : 0;
}

std::uint32_t LocalType::SendEscCode(std::uint8_t letter) {
  const TraceScope trace{"Sgeneral::LocalType::SendEscCode"};
  const std::array<std::uint8_t, 2> command{kEsc, letter};
  return Write(command);
}

std::uint32_t LocalType::SendFSCode(std::uint8_t letter) {
  const TraceScope trace{"Sgeneral::LocalType::SendFSCode"};
  const std::array<std::uint8_t, 2> command{kFs, letter};
  return Write(command);
}

std::uint32_t LocalType::Read(std::span<std::uint8_t> bytes) {
  const TraceScope trace{"Sgeneral::LocalType::Read"};
  DeviceDriver* channel = currentChannel;
  if (channel == nullptr) return 0;
  const auto length = static_cast<std::uint32_t>(bytes.size());
  return channel->Read(bytes.data(), length) == kTransferDone ? 1 : 0;
}

std::uint32_t LocalType::Write(std::span<const std::uint8_t> bytes) {
  const TraceScope trace{"Sgeneral::LocalType::Write"};
  DeviceDriver* channel = currentChannel;
  if (channel == nullptr) return 0;
  const auto length = static_cast<std::uint32_t>(bytes.size());
  return channel->Write(bytes.data(), length) == kTransferDone ? 1 : 0;
}

std::uint32_t LocalType::FeedPaper() {
  const TraceScope trace{"Sgeneral::LocalType::FeedPaper"};
  return SendControlByte(kEm);
}

std::uint32_t LocalType::EjectPage() {
  const TraceScope trace{"Sgeneral::LocalType::EjectPage"};
  return SendControlByte(kFf);
}

std::uint32_t LocalType::SendControlByte(std::uint8_t code) {
  return Write({&code, 1}) == 0 ? 0 : CheckAck();
}

}  // namespace pmddb832
