// The heaps of the linked module: the nothrow forms of new, which nothing but the module uses, and
// the platform's stand-in for the process heap. What was allocated otherwise goes back to where it
// came from.

#include <cstdlib>
#include <new>

#include "platform/native.h"
#include "tests/safety/module_memory.h"

namespace {

void Free(void* block) noexcept {
  if (block != nullptr && !pmddb832::tests::GiveBlock(block)) std::free(block);
}

void* Allocate(std::size_t bytes) {
  void* const block = std::malloc(bytes == 0 ? 1 : bytes);
  if (block == nullptr) std::abort();
  return block;
}

std::uint8_t* TakeHeapBlock(std::size_t bytes) {
  return static_cast<std::uint8_t*>(pmddb832::tests::TakeBlock(bytes, 1));
}

void GiveHeapBlock(std::uint8_t* block) {
  pmddb832::tests::GiveBlock(block);
}

}  // namespace

void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
  return pmddb832::tests::TakeBlock(bytes, __STDCPP_DEFAULT_NEW_ALIGNMENT__);
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
  return pmddb832::tests::TakeBlock(bytes, __STDCPP_DEFAULT_NEW_ALIGNMENT__);
}
void* operator new(std::size_t bytes) {
  return Allocate(bytes);
}
void* operator new[](std::size_t bytes) {
  return Allocate(bytes);
}
void operator delete(void* block) noexcept {
  Free(block);
}
void operator delete[](void* block) noexcept {
  Free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  Free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  Free(block);
}

namespace pmddb832::tests {

void WatchModule() {
  platform::Native().takeHeapBlock = TakeHeapBlock;
  platform::Native().giveHeapBlock = GiveHeapBlock;
}

std::optional<Guard> GuardWithoutSanitizer() {
  return std::nullopt;
}

}  // namespace pmddb832::tests
