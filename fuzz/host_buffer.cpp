#include "fuzz/host_buffer.h"

#include <sanitizer/asan_interface.h>

#include <array>

namespace pmddb832::fuzz {
namespace {

constexpr std::size_t kGuardBytes = 64;

alignas(16) std::array<std::uint8_t, HostBuffer::kMostBytes + 32 * kGuardBytes> memory;
std::size_t usedBytes = 0;

// Of the buffer and the guard behind it.
std::size_t Footprint(std::size_t bytes) {
  return (bytes + kGuardBytes + 15) / 16 * 16;
}

}  // namespace

HostBuffer::HostBuffer(std::size_t bytes) {
  const std::size_t left = memory.size() - usedBytes;
  if (bytes > kMostBytes || Footprint(bytes) > left) bytes = 0;
  bytes_ = std::span{memory}.subspan(usedBytes, bytes);
  usedBytes += Footprint(bytes);
  ASAN_UNPOISON_MEMORY_REGION(bytes_.data(), bytes);
  ASAN_POISON_MEMORY_REGION(bytes_.data() + bytes, Footprint(bytes) - bytes);
}

HostBuffer::~HostBuffer() {
  usedBytes -= Footprint(bytes_.size());
  ASAN_UNPOISON_MEMORY_REGION(bytes_.data(), Footprint(bytes_.size()));
}

}  // namespace pmddb832::fuzz
