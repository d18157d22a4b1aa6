#include <algorithm>

#include "simulator/device/device_results.h"
#include "simulator/device/scanner.h"

// The device interface of the scanner.

namespace simulator {
std::int32_t Scanner::RawReadData(void* buffer, std::uint32_t* byteCount, void*) {
  const std::uint32_t wanted = *byteCount;
  while (replies.Size() < wanted && SendBlockPiece()) {
  }
  *byteCount = static_cast<std::uint32_t>(std::min<std::size_t>(wanted, replies.Size()));
  replies.Take(static_cast<std::uint8_t*>(buffer), *byteCount);
  if (*byteCount == wanted) return 0;
  JudgeReading(wanted, *byteCount);
  return device_results::kTimeout;
}

std::int32_t Scanner::RawWriteData(void* buffer, std::uint32_t byteCount, void*) {
  Bytes bytes(static_cast<const std::uint8_t*>(buffer), byteCount);
  if (!bytes.empty()) JudgeUnread(bytes);
  while (!bytes.empty()) bytes = bytes.subspan(Consume(bytes));
  return 0;
}

}  // namespace simulator
