#include "tests/safety/guarded_memory.h"

#ifdef _WIN32
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <unistd.h>
#endif
#include <doctest/doctest.h>

#include <array>

using namespace pmddb832::tests;

namespace {

#ifdef _WIN32

bool CanRead(const std::uint8_t* byte) {
  MEMORY_BASIC_INFORMATION pages{};
  REQUIRE(VirtualQuery(byte, &pages, sizeof pages) == sizeof pages);
  return pages.State == MEM_COMMIT && pages.Protect == PAGE_READWRITE;
}

#else

bool CanRead(const std::uint8_t* byte) {
  std::array<int, 2> ends{};
  REQUIRE(pipe(ends.data()) == 0);
  const bool read = write(ends[1], byte, 1) == 1;
  close(ends[0]);
  close(ends[1]);
  return read;
}

#endif

}  // namespace

TEST_CASE("the byte behind a block that is guarded behind cannot be read") {
  for (const std::size_t bytes : {1u, 1872u, 4095u, 4096u, 4097u, 65296u}) {
    CAPTURE(bytes);
    const GuardedMemory memory(bytes, Guard::kBehind);
    CHECK(memory.Bytes().size() == bytes);
    CHECK(CanRead(&memory.Bytes().back()));
    CHECK_FALSE(CanRead(&memory.Bytes().back() + 1));
  }
}

TEST_CASE("the byte before a block that is guarded before cannot be read") {
  const GuardedMemory memory(20, Guard::kBefore);
  CHECK(CanRead(memory.Bytes().data()));
  CHECK_FALSE(CanRead(memory.Bytes().data() - 1));
}

TEST_CASE("an aligned block that is guarded behind ends less than its alignment before the page") {
  const GuardedMemory memory(20, Guard::kBehind, 16);
  CHECK(reinterpret_cast<std::uintptr_t>(memory.Bytes().data()) % 16 == 0);
  CHECK(CanRead(memory.Bytes().data() + 31));
  CHECK_FALSE(CanRead(memory.Bytes().data() + 32));
}
