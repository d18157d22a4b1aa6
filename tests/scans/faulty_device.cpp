#include "tests/scans/faulty_device.h"

#include <algorithm>

namespace pmddb832::tests {
namespace {

constexpr std::int32_t kFailure = -1;
constexpr std::uint8_t kAck = 0x06;
constexpr std::uint8_t kNak = 0x15;

}  // namespace

std::int32_t FaultyDevice::RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) {
  const bool fails = Fails();
  const bool timesOut = Strikes(FaultKind::kTimesOut);
  const std::uint32_t wanted = *byteCount;
  std::vector<std::uint8_t> bytes(wanted);
  const std::int32_t result = sound_.RawReadData(bytes.data(), byteCount, overlapped);
  if (!bytes.empty() && Strikes(FaultKind::kNak) && bytes[0] == kAck) bytes[0] = kNak;
  if (!bytes.empty() && Strikes(FaultKind::kWrongFirstByte)) bytes[0] ^= 0x55;
  if (timesOut || Strikes(FaultKind::kCutShort))
    *byteCount = std::min(*byteCount, fault_->delivered);
  transfers_.push_back(wanted);
  if (fails) return kFailure;
  std::copy_n(bytes.begin(), *byteCount, static_cast<std::uint8_t*>(buffer));
  return timesOut ? kFailure : result;
}

std::int32_t FaultyDevice::RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) {
  const bool fails = Fails();
  transfers_.push_back(0);
  return fails ? kFailure : sound_.RawWriteData(buffer, byteCount, overlapped);
}

bool FaultyDevice::Strikes(FaultKind kind) const {
  if (!fault_.has_value() || fault_->kind != kind) return false;
  const std::size_t now = transfers_.size();
  return kind == FaultKind::kGone ? now >= fault_->transfer : now == fault_->transfer;
}

}  // namespace pmddb832::tests
