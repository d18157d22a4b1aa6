// The heaps of the built DLL: its imports of malloc and free, behind its new and delete, and of
// HeapAlloc and HeapFree, for its receive buffers. What was allocated before, by its C runtime,
// goes back to where it came from.

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>

#include "tests/safety/module_memory.h"

namespace pmddb832::tests {
namespace {

constexpr std::size_t kMallocAlignment = 16;

// What the module imported. HeapAlloc and malloc are not called any more.
decltype(&HeapAlloc) formerHeapAlloc = nullptr;
decltype(&HeapFree) formerHeapFree = nullptr;
decltype(&std::malloc) formerMalloc = nullptr;
decltype(&std::free) formerFree = nullptr;

void* Malloc(std::size_t bytes) {
  return TakeBlock(bytes, kMallocAlignment);
}

void Free(void* block) {
  if (block != nullptr && !GiveBlock(block)) formerFree(block);
}

LPVOID WINAPI AllocateFromHeap(HANDLE /*heap*/, DWORD /*flags*/, SIZE_T bytes) {
  return TakeBlock(bytes, 1);
}

BOOL WINAPI FreeToHeap(HANDLE heap, DWORD flags, LPVOID block) {
  return GiveBlock(block) ? TRUE : formerHeapFree(heap, flags, block);
}

template <class Item>
Item* At(std::uint8_t* image, std::size_t offset) {
  return reinterpret_cast<Item*>(image + offset);
}

// The place of the address of an imported function; null when the library imports none of the name.
ULONG_PTR* FindImport(std::uint8_t* image, const char* name) {
  const auto* const headers = At<IMAGE_NT_HEADERS64>(
      image, static_cast<std::size_t>(At<IMAGE_DOS_HEADER>(image, 0)->e_lfanew));
  const auto* library = At<IMAGE_IMPORT_DESCRIPTOR>(
      image, headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress);
  for (; library->Name != 0; ++library) {
    const auto* names = At<IMAGE_THUNK_DATA64>(image, library->OriginalFirstThunk);
    for (std::size_t i = 0; names[i].u1.AddressOfData != 0; ++i) {
      const auto* const import = At<IMAGE_IMPORT_BY_NAME>(image, names[i].u1.AddressOfData);
      if (std::strcmp(reinterpret_cast<const char*>(import->Name), name) == 0) {
        return &At<IMAGE_THUNK_DATA64>(image, library->FirstThunk)[i].u1.Function;
      }
    }
  }
  return nullptr;
}

// Puts a function in the place of an import and keeps the former one, unless it is there already:
// the module may be loaded twice.
template <class Function>
void Replace(std::uint8_t* image, const char* name, Function* replacement, Function*& former) {
  ULONG_PTR* const place = FindImport(image, name);
  if (place == nullptr) {
    throw std::runtime_error(std::string("Pmddb832.dll does not import ") + name);
  }
  if (*place == reinterpret_cast<ULONG_PTR>(replacement)) return;
  former = reinterpret_cast<Function*>(*place);
  DWORD protection = 0;
  VirtualProtect(place, sizeof *place, PAGE_READWRITE, &protection);
  *place = reinterpret_cast<ULONG_PTR>(replacement);
  VirtualProtect(place, sizeof *place, protection, &protection);
}

}  // namespace

void WatchModule() {
  auto* const image = reinterpret_cast<std::uint8_t*>(GetModuleHandleA("Pmddb832.dll"));
  if (image == nullptr) throw std::runtime_error("Pmddb832.dll is not loaded");
  Replace(image, "malloc", Malloc, formerMalloc);
  Replace(image, "free", Free, formerFree);
  Replace(image, "HeapAlloc", AllocateFromHeap, formerHeapAlloc);
  Replace(image, "HeapFree", FreeToHeap, formerHeapFree);
}

std::optional<Guard> GuardWithoutSanitizer() {
  return Guard::kBehind;
}

}  // namespace pmddb832::tests
