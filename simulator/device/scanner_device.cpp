#include <algorithm>

#include "simulator/device/device_results.h"
#include "simulator/device/scanner.h"

// The device interface of the scanner.

namespace simulator {
std::int32_t Scanner::RawReadData(void* buffer, std::uint32_t* byteCount, void*) {
  const std::uint32_t wanted = *byteCount;
  const std::uint32_t passing = cable_.Begin(wanted);
  while (replies.Size() < passing && SendBlockPiece()) {
  }
  const auto available = static_cast<std::uint32_t>(std::min<std::size_t>(passing, replies.Size()));
  *byteCount = cable_.Shorten(available);
  replies.Take(static_cast<std::uint8_t*>(buffer), *byteCount);
  replies.Drop(available - *byteCount);
  if (*byteCount < available) ExcuseOutOfStep();
  cable_.Passed(available);
  if (passing < wanted) return device_results::kUnplugged;
  if (available == wanted) return 0;
  JudgeReading(wanted, available);
  return device_results::kTimeout;
}

std::int32_t Scanner::RawWriteData(void* buffer, std::uint32_t byteCount, void*) {
  const std::uint32_t passing = cable_.Begin(byteCount);
  cable_.Passed(passing);
  Bytes bytes(static_cast<const std::uint8_t*>(buffer), passing);
  if (!bytes.empty()) JudgeUnread(bytes);
  while (!bytes.empty()) bytes = bytes.subspan(Consume(bytes));
  return passing < byteCount ? device_results::kUnplugged : 0;
}

}  // namespace simulator
