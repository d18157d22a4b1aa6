#include "transport/receive_buffer.h"

#include <utility>

namespace pmddb832 {

bool ReceiveBuffer::Allocate(std::size_t bytes) {
  ++changes_;
  block_.reset();
  block_ = platform::MakeHeapBlock(bytes);
  return IsThere();
}

void ReceiveBuffer::Release() {
  ++changes_;
  block_.reset();
}

bool ReceiveBuffer::Fill(LocalType& wire, Call& call, std::size_t offset, std::size_t bytes) {
  const std::uint32_t before = changes_;
  platform::HeapBlock lent = std::move(block_);
  const bool filled = wire.Read(call, {lent.get() + offset, bytes}) != 0;
  if (changes_ != before) return false;
  block_ = std::move(lent);
  return filled;
}

}  // namespace pmddb832
