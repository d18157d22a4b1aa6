#include "capture/record/recording_device.h"

#include <algorithm>

namespace capture {

std::int32_t RecordingDevice::RawReadData(void* buffer, std::uint32_t* byteCount,
                                          void* overlapped) {
  const std::uint32_t requested = *byteCount;
  const std::int32_t result = device_.RawReadData(buffer, byteCount, overlapped);
  const std::uint32_t delivered = std::min(requested, *byteCount);
  recorder_.AddRead(requested, {static_cast<const std::uint8_t*>(buffer), delivered}, result);
  return result;
}

std::int32_t RecordingDevice::RawWriteData(void* buffer, std::uint32_t byteCount,
                                           void* overlapped) {
  const std::int32_t result = device_.RawWriteData(buffer, byteCount, overlapped);
  recorder_.AddWrite({static_cast<const std::uint8_t*>(buffer), byteCount}, result);
  return result;
}

}  // namespace capture
