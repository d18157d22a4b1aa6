#include "simulator/device/reply_queue.h"

#include <algorithm>

namespace simulator {

void ReplyQueue::Put(std::span<const std::uint8_t> more) {
  bytes_.insert(bytes_.end(), more.begin(), more.end());
}

std::size_t ReplyQueue::Take(std::uint8_t* target, std::size_t count) {
  const std::size_t moved = std::min(count, Size());
  std::copy_n(Unread().begin(), moved, target);
  Drop(moved);
  return moved;
}

void ReplyQueue::Drop(std::size_t count) {
  taken_ += std::min(count, Size());
  if (taken_ == bytes_.size()) Clear();
}

void ReplyQueue::Clear() {
  bytes_.clear();
  taken_ = 0;
}

}  // namespace simulator
