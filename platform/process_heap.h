#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace pmddb832::platform {

// `bytes` zeroed bytes of the process heap; null when there is no memory. Give them back with
// FreeToProcessHeap.
std::uint8_t* AllocateFromProcessHeap(std::size_t bytes);
void FreeToProcessHeap(std::uint8_t* block);

struct ProcessHeapDeleter {
  void operator()(std::uint8_t* block) const { FreeToProcessHeap(block); }
};

// A block of the process heap and its owner; empty when allocation failed.
using HeapBlock = std::unique_ptr<std::uint8_t[], ProcessHeapDeleter>;

inline HeapBlock MakeHeapBlock(std::size_t bytes) {
  return HeapBlock(AllocateFromProcessHeap(bytes));
}

}  // namespace pmddb832::platform
