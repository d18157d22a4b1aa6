#include <cerrno>
#include <cstdlib>
#include <ctime>

#include "platform/operating_system.h"
#include "platform/process_heap.h"
#include "platform/trace.h"

namespace pmddb832::platform {

// There is no image acquisition service, and no log of one.
TraceLog* CreateTraceLog(void* /*moduleInstance*/) {
  return nullptr;
}
void WriteTrace(TraceLog&, const char*, const char*, std::int32_t) {}
void ReleaseTraceLog(TraceLog&) {}

std::uint8_t* AllocateFromProcessHeap(std::size_t bytes) {
  return static_cast<std::uint8_t*>(std::calloc(bytes, 1));
}

void FreeToProcessHeap(std::uint8_t* block) {
  std::free(block);
}

void SleepMilliseconds(std::uint32_t milliseconds) {
  constexpr std::uint32_t kPerSecond = 1000;
  constexpr long kNanoseconds = 1'000'000;
  timespec left{milliseconds / kPerSecond, milliseconds % kPerSecond * kNanoseconds};
  // A signal that the program handles ends one sleep and tells what is left.
  while (nanosleep(&left, &left) != 0 && errno == EINTR) {
  }
}

// Hosts here have no windows of Windows.
void RepaintNow(void* /*window*/) {}

// Not one of Windows' kind; the module then takes the one that says least.
std::optional<OperatingSystemVersion> QueryOperatingSystemVersion() {
  return std::nullopt;
}

}  // namespace pmddb832::platform
