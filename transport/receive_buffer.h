#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/process_heap.h"
#include "transport/local_type.h"

namespace pmddb832 {

// The block of the process heap into which image data are received. While a transfer fills it, the
// block belongs to the transfer: whoever calls the module out of the device meanwhile finds no
// buffer, and one that is released or replaced meanwhile is freed behind the transfer.
class ReceiveBuffer {
 public:
  // Replaces the buffer by `bytes` zeroed bytes; false when there is no memory.
  [[nodiscard]] bool Allocate(std::size_t bytes);
  void Release();

  bool IsThere() const { return block_ != nullptr; }
  std::uint32_t Changes() const { return changes_; }  // counts releases and replacements
  std::uint8_t* Data() { return block_.get(); }

  // Fills `bytes` bytes from `offset` on, which must lie in the buffer. False when the transfer
  // failed, and when the buffer was released or replaced meanwhile.
  [[nodiscard]] bool Fill(LocalType& wire, Call& call, std::size_t offset, std::size_t bytes);

 private:
  platform::HeapBlock block_;
  std::uint32_t changes_ = 0;
};

}  // namespace pmddb832
