#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace pmddb832::tests {

// Where the page lies that nobody may touch.
enum class Guard {
  kBefore,  // the block's first byte is right behind it
  kBehind,  // the block's last byte is right before it
};

// A block of zeroed bytes beside an inaccessible page: the first access over that edge ends the
// program. With an alignment other than 1, up to that many bytes less one lie between the end of
// the block and the page behind it.
class GuardedMemory {
 public:
  GuardedMemory(std::size_t bytes, Guard guard, std::size_t alignment = 1);
  ~GuardedMemory();
  GuardedMemory(GuardedMemory&& other) noexcept;
  GuardedMemory(const GuardedMemory&) = delete;
  GuardedMemory& operator=(const GuardedMemory&) = delete;
  GuardedMemory& operator=(GuardedMemory&&) = delete;

  std::span<std::uint8_t> Bytes() const { return bytes_; }

 private:
  std::uint8_t* pages_;  // the accessible ones and the inaccessible one; null when moved from
  std::size_t pageBytes_;
  std::span<std::uint8_t> bytes_;
};

}  // namespace pmddb832::tests
