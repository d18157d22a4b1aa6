#pragma once

#include <cstddef>
#include <optional>

#include "tests/safety/guarded_memory.h"

namespace pmddb832::tests {

// What the module under test has taken from its heaps, and how it is to be served. A program that
// links module_memory.cpp serves it so: natively from its start, the built DLL from WatchModule on.
struct ModuleMemory {
  std::size_t requests = 0;           // so far, refused ones included
  std::size_t blocks = 0;             // taken and not given back
  std::optional<std::size_t> grants;  // after that many requests, each is refused
  std::optional<Guard> guard;         // blocks lie beside an inaccessible page
};

ModuleMemory& MemoryOfModule();

// To be called when the module has been loaded, each time.
void WatchModule();

// Gives back all guarded blocks that the module still has: to be called when nothing of it is used
// any more. A system allows a program only so many pages that nobody may touch.
void GiveGuardedBlocks();

// Where blocks of the module are to be guarded when nothing but their access is to be watched: the
// sanitizers watch the native build.
std::optional<Guard> GuardWithoutSanitizer();

// For those that stand in the place of the heaps: takes a block of zeroed bytes, null when it is
// refused; gives a block back, false when it is not one of these.
void* TakeBlock(std::size_t bytes, std::size_t alignment);
bool GiveBlock(void* block);

}  // namespace pmddb832::tests
