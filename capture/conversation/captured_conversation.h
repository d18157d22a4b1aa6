#pragma once

#include "capture/conversation/conversation.h"
#include "capture/file/capture.h"

namespace capture {

// What a recorded transfer is in the conversation, of which it is the next one.
inline Part Follow(Conversation& conversation, const Transfer& transfer) {
  const bool hasFailed = transfer.result < 0;
  if (transfer.direction == Direction::kFromScanner) {
    if (transfer.bytes.has_value()) return conversation.Read(*transfer.bytes, hasFailed);
    return conversation.Read({{}, transfer.delivered, transfer.lastByte, hasFailed});
  }
  const Part part = conversation.Write(transfer.Kept());
  if (hasFailed) conversation.Break();
  return part;
}

}  // namespace capture
