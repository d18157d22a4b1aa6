#pragma once

#include <cstdint>
#include <vector>

#include "transport/raw_device.h"

namespace pmddb832::fuzz {

// Passes every call on to another device, and keeps what that one answered.
class RecordingDevice final : public RawDevice {
 public:
  explicit RecordingDevice(StillImageDevice& recorded) : recorded_(recorded) {}

  const std::vector<std::uint8_t>& Answers() const { return answers_; }

  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) override {
    const std::int32_t result = recorded_.RawReadData(buffer, byteCount, overlapped);
    const auto* const bytes = static_cast<const std::uint8_t*>(buffer);
    answers_.insert(answers_.end(), bytes, bytes + *byteCount);
    return result;
  }
  std::int32_t RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) override {
    return recorded_.RawWriteData(buffer, byteCount, overlapped);
  }

 private:
  StillImageDevice& recorded_;
  std::vector<std::uint8_t> answers_;
};

}  // namespace pmddb832::fuzz
