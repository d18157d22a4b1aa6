#include "interface/command_level_probe.h"

#include <algorithm>

#include "platform/trace.h"
#include "transport/device_driver.h"
#include "wire/commands.h"
#include "wire/protocol_bytes.h"
#include "wire/wire_block.h"

namespace pmddb832 {

Checkcmd::Checkcmd(std::uint8_t option) : GeneralCmd(option) {
  const TraceScope trace{"Checkcmd::Checkcmd"};
}

Checkcmd::~Checkcmd() {
  const TraceScope trace{"Checkcmd::~Checkcmd"};
}

std::uint32_t Checkcmd::Open(Call& call) {
  const TraceScope trace{"Checkcmd::Open"};
  if (call.channel == nullptr) return 0;
  opened_ = call.channel->Open() != 0;
  return opened_ ? 1 : 0;
}

void Checkcmd::Close(Call& call) {
  const TraceScope trace{"Checkcmd::Close"};
  if (!opened_) return;
  opened_ = false;
  if (call.channel != nullptr) call.channel->Close(call.settings);
}

std::uint32_t Checkcmd::GetLastError() {
  const TraceScope trace{"Checkcmd::GetLastError"};
  return Wire()->ErrorCode();
}

std::uint32_t Checkcmd::GetLevelInfo(Call& call) {
  const TraceScope trace{"Checkcmd::GetLevelInfo"};
  if (SendEscCode(call, esc::kIdentity) == 0) return 0;
  ReplyHeader header{};
  if (Wire()->Read(call, header) == 0 || Get(header, kReplyStx) != kStx) return 0;
  std::copy(header.begin(), header.end(), replyBuffer_.begin());
  const auto count = static_cast<std::int16_t>(Get(header, kReplyCount));
  if (count < 0 || !ReadData(call, static_cast<std::uint32_t>(count))) return 0;
  level_.status = Get(header, kReplyStatus);
  return 1;
}

bool Checkcmd::ReadData(Call& call, std::uint32_t count) {
  std::uint32_t left = count;
  const auto readNext = [&] {
    const auto size = std::min<std::size_t>(left, replyBuffer_.size());
    left -= static_cast<std::uint32_t>(size);
    return Wire()->Read(call, std::span{replyBuffer_}.first(size)) != 0;
  };
  if (!readNext()) return false;
  level_.letter = replyBuffer_[0];
  level_.digit = replyBuffer_[1];
  while (left > 0) {
    if (!readNext()) return false;
  }
  return true;
}

std::uint32_t Checkcmd::EnableOption(Call& /*call*/, std::uint32_t /*value*/) {
  return 1;
}

std::uint32_t Checkcmd::AbortScan(Call& /*call*/) {
  return 0;
}

void Checkcmd::InitAcquire(Call& /*call*/, std::uint32_t /*outputFormat*/,
                           ProgressCallback /*progress*/, AcquisitionSetup* /*setup*/) {}

void Checkcmd::AcquireImage(Call& /*call*/, std::uint8_t* /*buffer*/, std::uint32_t /*bufferBytes*/,
                            AcquisitionBand* /*band*/) {}

std::uint32_t Checkcmd::GetOptionStatus(Call& /*call*/, std::uint8_t* /*mainStatus*/,
                                        std::uint32_t /*option*/) {
  return 0;
}

std::uint8_t Checkcmd::SetFocusPos(Call& /*call*/, std::uint32_t /*mode*/, std::uint8_t position) {
  return position;
}

std::uint32_t Checkcmd::GetScanPaperSize(Call& /*call*/, std::uint32_t /*option*/,
                                         std::uint32_t* /*width*/, std::uint32_t* /*height*/) {
  return 0;
}

}  // namespace pmddb832
