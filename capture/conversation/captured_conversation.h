#pragma once

#include "capture/conversation/conversation.h"
#include "capture/file/capture.h"

namespace capture {

// What a recorded transfer is in the conversation, of which it is the next one.
inline Part Follow(Conversation& conversation, const Transfer& transfer) {
  const std::span<const std::uint8_t> bytes = transfer.bytes.has_value()
                                                  ? std::span<const std::uint8_t>(*transfer.bytes)
                                                  : std::span<const std::uint8_t>();
  if (transfer.direction == Direction::kFromScanner) {
    const std::uint8_t lastByte = bytes.empty() ? transfer.lastByte : bytes.back();
    return conversation.Read({bytes, transfer.delivered, lastByte, transfer.result < 0});
  }
  const Part part = conversation.Write(bytes);
  if (transfer.result < 0) conversation.Break();
  return part;
}

}  // namespace capture
