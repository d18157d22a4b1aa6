// The module allocates with the nothrow forms of new only. These replace the runtime's own, which
// would bring its exception machinery, three times the size of the module, into the library.

#include <cstdlib>
#include <new>

void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
  return std::malloc(bytes);
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
  return std::malloc(bytes);
}
void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete[](void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  std::free(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
  std::free(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
  std::free(block);
}
