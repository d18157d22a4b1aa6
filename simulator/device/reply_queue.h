#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace simulator {

// The bytes that the scanner has said and the driver has not read yet.
class ReplyQueue {
 public:
  std::size_t Size() const { return bytes_.size() - taken_; }
  std::span<const std::uint8_t> Unread() const { return std::span(bytes_).subspan(taken_); }

  void Put(std::uint8_t byte) { bytes_.push_back(byte); }
  void Put(std::span<const std::uint8_t> more);
  void Put(std::size_t count, std::uint8_t byte) { bytes_.insert(bytes_.end(), count, byte); }

  // Moves up to `count` bytes to `target` and returns how many there were.
  std::size_t Take(std::uint8_t* target, std::size_t count);

  // Forgets up to `count` bytes.
  void Drop(std::size_t count);
  void Clear();

 private:
  std::vector<std::uint8_t> bytes_;
  std::size_t taken_ = 0;
};

}  // namespace simulator
