#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#include <doctest/doctest.h>
#include <objbase.h>

#include <array>

#include "simulator/catalog/catalog.h"
#include "tests/scans/whole_scan.h"

// What Windows counts for the process while the built DLL comes and goes, on its own heaps.

using namespace pmddb832;
using namespace pmddb832::tests;

namespace {

constexpr int kRounds = 1000;
constexpr std::uintptr_t kSpareHandles = 50;  // that Windows may open for itself meanwhile

struct ProcessUse {
  std::uintptr_t nextHandle = 0;  // each handle that is left open moves it
  std::size_t heapBlocks = 0;
  std::size_t heapBytes = 0;
};

void AddHeap(HANDLE heap, ProcessUse& use) {
  PROCESS_HEAP_ENTRY entry{};
  HeapLock(heap);
  while (HeapWalk(heap, &entry)) {
    if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) == 0) continue;
    ++use.heapBlocks;
    use.heapBytes += entry.cbData;
  }
  HeapUnlock(heap);
}

std::uintptr_t NextHandle() {
  const HANDLE handle = CreateEventA(nullptr, FALSE, FALSE, nullptr);
  REQUIRE(handle != nullptr);
  CloseHandle(handle);
  return reinterpret_cast<std::uintptr_t>(handle);
}

ProcessUse CountProcess() {
  ProcessUse use;
  use.nextHandle = NextHandle();
  std::array<HANDLE, 64> heaps{};
  const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
  REQUIRE(count <= heaps.size());
  for (DWORD i = 0; i < count; ++i) AddHeap(heaps[i], use);
  return use;
}

// A host uses COM itself; else each load of the module would bring it and each unload take it away.
struct ComUser {
  ComUser() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
  ~ComUser() { CoUninitialize(); }
  ComUser(const ComUser&) = delete;
  ComUser& operator=(const ComUser&) = delete;
};

void LoadScanUnload(const char* name, int rounds) {
  for (int round = 0; round < rounds; ++round) {
    const auto scanner = simulator::MakeScanner(name, ColourPicture(8, 8));
    WholeScan host(*scanner);
    REQUIRE(host.Open());
    host.SetArea(0, 0, 8, 3);
    REQUIRE(host.Acquire(5, 24 * 2).rows.size() == 3);
    host.module->CloseScanner();
  }
}

}  // namespace

TEST_CASE(
    "a thousand loads, scans and unloads leave the process's heaps and handles as they were") {
  const ComUser host;
  for (const char* name : {"extended", "standard"}) {
    CAPTURE(name);
    LoadScanUnload(name, 10);  // what Windows itself keeps of the first ones
    const ProcessUse before = CountProcess();
    REQUIRE(before.heapBlocks > 0);
    LoadScanUnload(name, kRounds);
    const ProcessUse after = CountProcess();
    CHECK(after.nextHandle <= before.nextHandle + kSpareHandles * 4);
    CHECK(after.heapBlocks <= before.heapBlocks);
    CHECK(after.heapBytes <= before.heapBytes);
  }
}
