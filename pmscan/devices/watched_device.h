#pragma once

#include <cstdint>
#include <string>

#include "transport/raw_device.h"

namespace pmscan {

// Passes transfers on to a device, and remembers the first one that failed.
class WatchedDevice final : public pmddb832::RawDevice {
 public:
  // The device outlives this.
  explicit WatchedDevice(pmddb832::StillImageDevice& device) : device_(device) {}

  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) override;
  std::int32_t RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) override;

  // "transfer 57, a read of 14 bytes behind FS G start transfer, failed with 0x80070079,
  // it took too long"; empty as long as none did. Transfers count from 0, as in captures.
  const std::string& FirstFailure() const { return firstFailure_; }

 private:
  void Note(std::int32_t result, const char* kind, std::uint32_t bytes);

  pmddb832::StillImageDevice& device_;
  std::uint32_t transfers_ = 0;
  std::string command_;  // the last one, in words
  std::string firstFailure_;
};

}  // namespace pmscan
