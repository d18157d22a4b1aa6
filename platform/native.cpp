#include "platform/native.h"

#include <cstdlib>
#include <deque>

#include "platform/process_heap.h"
#include "platform/trace.h"

namespace pmddb832::platform {
namespace {

std::uint8_t* TakeHeapBlock(std::size_t bytes) {
  const NativePlatform& native = Native();
  if (native.takeHeapBlock != nullptr) return native.takeHeapBlock(bytes);
  return static_cast<std::uint8_t*>(std::calloc(bytes, 1));
}

}  // namespace

struct TraceLog {
  std::size_t number;
};

NativePlatform& Native() {
  static NativePlatform native;
  return native;
}

TraceLog* CreateTraceLog(void* /*moduleInstance*/) {
  static std::deque<TraceLog> logs;
  if (!Native().logAvailable) return nullptr;
  ++Native().logReferences;
  return &logs.emplace_back(TraceLog{++Native().logsCreated});
}

void WriteTrace(TraceLog& log, const char* format, const char* name, std::int32_t detail) {
  std::string text = format;
  if (const std::size_t place = text.find("%s"); place != std::string::npos) {
    text.replace(place, 2, name);
  }
  Native().logLines.push_back({text, detail, log.number});
}

void ReleaseTraceLog(TraceLog& /*log*/) {
  --Native().logReferences;
}

std::uint8_t* AllocateFromProcessHeap(std::size_t bytes) {
  std::optional<std::size_t>& left = Native().heapAllocationsLeft;
  if (left == 0) return nullptr;
  if (left.has_value()) --*left;
  std::uint8_t* const block = TakeHeapBlock(bytes);
  if (block != nullptr) ++Native().heapBlocks;
  return block;
}

void FreeToProcessHeap(std::uint8_t* block) {
  if (block == nullptr) return;
  --Native().heapBlocks;
  if (Native().giveHeapBlock != nullptr) return Native().giveHeapBlock(block);
  std::free(block);
}

void SleepMilliseconds(std::uint32_t milliseconds) {
  Native().sleptMilliseconds += milliseconds;
}

void RepaintNow(void* window) {
  if (window == nullptr) return;
  Native().repaintedWindows.push_back(window);
  if (Native().onRepaint != nullptr) Native().onRepaint(window);
}

std::optional<OperatingSystemVersion> QueryOperatingSystemVersion() {
  return Native().version;
}

}  // namespace pmddb832::platform
