#include "fuzz/fuzz_device.h"

#include <cstdlib>
#include <cstring>
#include <utility>

namespace pmddb832::fuzz {
namespace {

// A call asks for 65535 lines at most, each at most a block of its own: header, data, answer and
// its acknowledge. The set-up in front of them is small.
constexpr std::size_t kMostTransfers = 4 * 65535 + 1000;

}  // namespace

std::int32_t FuzzDevice::RawReadData(void* buffer, std::uint32_t* byteCount, void*) {
  BeginTransfer();
  if (*byteCount > answers_.size()) {
    answers_ = {};
    return -1;
  }
  if (*byteCount > 0) std::memcpy(buffer, answers_.data(), *byteCount);
  answers_ = answers_.subspan(*byteCount);
  return 0;
}

std::int32_t FuzzDevice::RawWriteData(void* buffer, std::uint32_t byteCount, void*) {
  BeginTransfer();
  // Every byte that is sent must be one that was set.
  const auto* const bytes = static_cast<const std::uint8_t*>(buffer);
  std::uint32_t sum = 0;
  for (std::uint32_t i = 0; i < byteCount; ++i) sum += bytes[i];
  return sum == UINT32_MAX ? -1 : 0;
}

void FuzzDevice::BeginTransfer() {
  if (++transfers_ > kMostTransfers) std::abort();
  if (call_ == nullptr || transfersToCall_-- != 0) return;
  std::exchange(call_, nullptr)();
}

}  // namespace pmddb832::fuzz
