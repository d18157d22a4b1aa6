#include "transport/local_type.h"

#include <array>

#include "platform/trace.h"
#include "transport/device_driver.h"
#include "wire/protocol_bytes.h"

namespace pmddb832 {

std::uint32_t LocalType::SendAck(Call& call, std::uint8_t code) {
  const TraceScope trace{"Sgeneral::LocalType::SendAck"};
  if (Write(call, {&code, 1}) == 0) return 0;
  return code == kCan ? CheckAck(call) : 1;
}

std::uint32_t LocalType::CheckAck(Call& call) {
  const TraceScope trace{"Sgeneral::LocalType::CheckAck"};
  std::uint8_t reply = 0;
  return Read(call, {&reply, 1}) != 0 && reply == kAck ? 1 : 0;
}

std::uint32_t LocalType::SendEscCode(Call& call, std::uint8_t letter) {
  const TraceScope trace{"Sgeneral::LocalType::SendEscCode"};
  const std::array<std::uint8_t, 2> command{kEsc, letter};
  return Write(call, command);
}

std::uint32_t LocalType::SendFSCode(Call& call, std::uint8_t letter) {
  const TraceScope trace{"Sgeneral::LocalType::SendFSCode"};
  const std::array<std::uint8_t, 2> command{kFs, letter};
  return Write(call, command);
}

std::uint32_t LocalType::Read(Call& call, std::span<std::uint8_t> bytes) {
  const TraceScope trace{"Sgeneral::LocalType::Read"};
  if (call.channel == nullptr) return 0;
  const auto length = static_cast<std::uint32_t>(bytes.size());
  return call.channel->Read(call.settings, bytes.data(), length) == kTransferDone ? 1 : 0;
}

std::uint32_t LocalType::Write(Call& call, std::span<const std::uint8_t> bytes) {
  const TraceScope trace{"Sgeneral::LocalType::Write"};
  if (call.channel == nullptr) return 0;
  const auto length = static_cast<std::uint32_t>(bytes.size());
  return call.channel->Write(call.settings, bytes.data(), length) == kTransferDone ? 1 : 0;
}

std::uint32_t LocalType::FeedPaper(Call& call) {
  const TraceScope trace{"Sgeneral::LocalType::FeedPaper"};
  return SendControlByte(call, kEm);
}

std::uint32_t LocalType::EjectPage(Call& call) {
  const TraceScope trace{"Sgeneral::LocalType::EjectPage"};
  return SendControlByte(call, kFf);
}

std::uint32_t LocalType::SendControlByte(Call& call, std::uint8_t code) {
  return Write(call, {&code, 1}) == 0 ? 0 : CheckAck(call);
}

}  // namespace pmddb832
