#include <algorithm>

#include "simulator/device/device_results.h"
#include "simulator/device/scanner.h"

// The device interface of the scanner.

namespace simulator {
namespace {

constexpr auto kNotImplemented = static_cast<std::int32_t>(0x80004001);
constexpr auto kNoInterface = static_cast<std::int32_t>(0x80004002);

}  // namespace

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

std::int32_t Scanner::QueryInterface(const void*, void**) {
  return kNoInterface;
}

std::int32_t Scanner::Initialize(void*, const wchar_t*, std::uint32_t, std::uint32_t) {
  return kNotImplemented;
}

std::int32_t Scanner::GetCapabilities(void*) {
  return kNotImplemented;
}

std::int32_t Scanner::GetStatus(void*) {
  return kNotImplemented;
}

std::int32_t Scanner::DeviceReset() {
  return kNotImplemented;
}

std::int32_t Scanner::Diagnostic(void*) {
  return kNotImplemented;
}

std::int32_t Scanner::Escape(std::uint32_t, const void*, std::uint32_t, void*, std::uint32_t,
                             std::uint32_t*) {
  return kNotImplemented;
}

std::int32_t Scanner::GetLastError(std::uint32_t*) {
  return kNotImplemented;
}

std::int32_t Scanner::LockDevice(std::uint32_t) {
  return kNotImplemented;
}

std::int32_t Scanner::UnLockDevice() {
  return kNotImplemented;
}

}  // namespace simulator
