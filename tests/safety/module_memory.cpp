#include "tests/safety/module_memory.h"

#include <cstdlib>
#include <new>
#include <unordered_map>

namespace pmddb832::tests {
namespace {

// The list of blocks must not take its own memory from what it keeps the list of.
template <class Value>
struct MallocAllocator {
  using value_type = Value;
  MallocAllocator() = default;
  template <class Other>
  explicit(false) MallocAllocator(const MallocAllocator<Other>& /*other*/) {}
  Value* allocate(std::size_t count) {
    void* const block = std::malloc(count * sizeof(Value));
    if (block == nullptr) std::abort();
    return static_cast<Value*>(block);
  }
  void deallocate(Value* block, std::size_t /*count*/) { std::free(block); }
  bool operator==(const MallocAllocator& /*other*/) const { return true; }
};

using Block = std::optional<GuardedMemory>;  // empty for one of the C library
using Blocks = std::unordered_map<void*, Block, std::hash<void*>, std::equal_to<>,
                                  MallocAllocator<std::pair<void* const, Block>>>;

// Never destroyed: blocks are also given back behind the end of main.
Blocks& AllBlocks() {
  alignas(Blocks) static std::byte room[sizeof(Blocks)];
  static auto* const blocks = new (room) Blocks;
  return *blocks;
}

bool Grant() {
  ModuleMemory& memory = MemoryOfModule();
  ++memory.requests;
  if (memory.grants == 0) return false;
  if (memory.grants.has_value()) --*memory.grants;
  ++memory.blocks;
  return true;
}

void* TakeGuarded(std::size_t bytes, std::size_t alignment, Guard guard) {
  GuardedMemory memory(bytes, guard, alignment);
  void* const block = memory.Bytes().data();
  AllBlocks().emplace(block, std::move(memory));
  return block;
}

void* TakeUnguarded(std::size_t bytes) {
  void* const block = std::calloc(bytes == 0 ? 1 : bytes, 1);
  if (block == nullptr) std::abort();
  AllBlocks().emplace(block, std::nullopt);
  return block;
}

}  // namespace

ModuleMemory& MemoryOfModule() {
  static ModuleMemory memory;
  return memory;
}

void* TakeBlock(std::size_t bytes, std::size_t alignment) {
  if (!Grant()) return nullptr;
  const std::optional<Guard> guard = MemoryOfModule().guard;
  return guard.has_value() ? TakeGuarded(bytes, alignment, *guard) : TakeUnguarded(bytes);
}

bool GiveBlock(void* block) {
  const auto found = AllBlocks().find(block);
  if (found == AllBlocks().end()) return false;
  --MemoryOfModule().blocks;
  if (!found->second.has_value()) std::free(block);
  AllBlocks().erase(found);
  return true;
}

void GiveGuardedBlocks() {
  const auto isGuarded = [](const auto& entry) { return entry.second.has_value(); };
  MemoryOfModule().blocks -= std::erase_if(AllBlocks(), isGuarded);
}

}  // namespace pmddb832::tests
