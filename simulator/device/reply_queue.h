#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace simulator {

// The bytes that the scanner has said and the driver has not read yet.
class ReplyQueue {
 public:
  std::size_t Size() const { return bytes.size() - taken; }
  std::span<const std::uint8_t> Unread() const { return std::span(bytes).subspan(taken); }

  void Put(std::uint8_t byte) { bytes.push_back(byte); }
  void Put(std::span<const std::uint8_t> more);
  void Put(std::size_t count, std::uint8_t byte) { bytes.insert(bytes.end(), count, byte); }

  // Moves up to `count` bytes to `target` and returns how many there were.
  std::size_t Take(std::uint8_t* target, std::size_t count);

  // Forgets up to `count` bytes.
  void Drop(std::size_t count);
  void Clear();

 private:
  std::vector<std::uint8_t> bytes;
  std::size_t taken = 0;
};

}  // namespace simulator
