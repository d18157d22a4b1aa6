#include "tests/safety/guarded_memory.h"

#ifdef _WIN32
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <sys/mman.h>
#endif

#include <cstdlib>
#include <utility>

namespace pmddb832::tests {
namespace {

constexpr std::size_t kPageBytes = 4096;

constexpr std::size_t RoundUp(std::size_t bytes, std::size_t unit) {
  return (bytes + unit - 1) / unit * unit;
}

#ifdef _WIN32

std::uint8_t* ReservePages(std::size_t bytes) {
  return static_cast<std::uint8_t*>(VirtualAlloc(nullptr, bytes, MEM_RESERVE, PAGE_NOACCESS));
}

bool OpenPages(std::uint8_t* pages, std::size_t bytes) {
  return VirtualAlloc(pages, bytes, MEM_COMMIT, PAGE_READWRITE) != nullptr;
}

void ReleasePages(std::uint8_t* pages, std::size_t /*bytes*/) {
  VirtualFree(pages, 0, MEM_RELEASE);
}

#else

std::uint8_t* ReservePages(std::size_t bytes) {
  void* const pages = mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return pages == MAP_FAILED ? nullptr : static_cast<std::uint8_t*>(pages);
}

bool OpenPages(std::uint8_t* pages, std::size_t bytes) {
  return mprotect(pages, bytes, PROT_READ | PROT_WRITE) == 0;
}

void ReleasePages(std::uint8_t* pages, std::size_t bytes) {
  munmap(pages, bytes);
}

#endif

}  // namespace

GuardedMemory::GuardedMemory(std::size_t bytes, Guard guard, std::size_t alignment)
    : pageBytes_(RoundUp(bytes + 1, kPageBytes) + kPageBytes) {
  const std::size_t open = pageBytes_ - kPageBytes;
  pages_ = ReservePages(pageBytes_);
  std::uint8_t* const first = pages_ + (guard == Guard::kBefore ? kPageBytes : 0);
  // Nothing that uses this class can go on without memory.
  if (pages_ == nullptr || !OpenPages(first, open)) std::abort();
  const std::size_t offset = guard == Guard::kBefore ? 0 : open - RoundUp(bytes, alignment);
  bytes_ = {first + offset, bytes};
}

GuardedMemory::~GuardedMemory() {
  if (pages_ != nullptr) ReleasePages(pages_, pageBytes_);
}

GuardedMemory::GuardedMemory(GuardedMemory&& other) noexcept
    : pages_(std::exchange(other.pages_, nullptr)),
      pageBytes_(other.pageBytes_),
      bytes_(other.bytes_) {}

}  // namespace pmddb832::tests
