#pragma once

#include <cstdint>
#include <optional>

namespace pmddb832::platform {

void SleepMilliseconds(std::uint32_t milliseconds);

// Repaints a window of the host at once. `window` is its handle; null is ignored.
void RepaintNow(void* window);

struct OperatingSystemVersion {
  std::uint32_t platformId;  // 0 Win32s, 1 Windows 9x, 2 Windows NT
  std::uint32_t major;
  std::uint32_t minor;
};

// Empty when the system does not tell.
std::optional<OperatingSystemVersion> QueryOperatingSystemVersion();

}  // namespace pmddb832::platform
