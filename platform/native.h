#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/operating_system.h"

namespace pmddb832::platform {

struct TraceLine {
  std::string text;
  std::int32_t detail;
  std::size_t log;  // 1 for the log that was created first
};

// What the native build has instead of an operating system: everything that the module asks of it
// is recorded or can be set, so that nothing waits and any allocation can be refused.
struct NativePlatform {
  bool logAvailable = false;        // whether CreateTraceLog delivers a log
  std::vector<TraceLine> logLines;  // what was written to it
  std::size_t logsCreated = 0;
  std::size_t logReferences = 0;  // logs created and not released
  std::uint64_t sleptMilliseconds = 0;
  std::vector<void*> repaintedWindows;
  void (*onRepaint)(void* window) = nullptr;       // when set, runs in every repaint
  std::size_t heapBlocks = 0;                      // blocks allocated and not freed
  std::optional<std::size_t> heapAllocationsLeft;  // after that many, every allocation fails
  // Stand in the place of the C library's heap when set, both of them; blocks are zeroed.
  std::uint8_t* (*takeHeapBlock)(std::size_t bytes) = nullptr;
  void (*giveHeapBlock)(std::uint8_t* block) = nullptr;
  std::optional<OperatingSystemVersion> version = OperatingSystemVersion{2, 5, 1};
};

NativePlatform& Native();

}  // namespace pmddb832::platform
