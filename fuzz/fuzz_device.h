#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "transport/raw_device.h"

namespace pmddb832::fuzz {

// A device whose answers are the input of a fuzz target: reads take its bytes in order, and fail
// when there are none left; writes succeed. It stops the program where one call of the host makes
// more transfers than any call needs.
class FuzzDevice final : public RawDevice {
 public:
  explicit FuzzDevice(std::span<const std::uint8_t> answers) : answers_(answers) {}

  // To be called in front of each call of the host.
  void NextCall() { transfers_ = 0; }
  // Once, in the middle of the transfer that follows after so many, `call` runs.
  void CallWithin(std::size_t transfers, void (*call)()) {
    transfersToCall_ = transfers;
    call_ = call;
  }

  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) override;
  std::int32_t RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) override;

 private:
  void BeginTransfer();

  std::span<const std::uint8_t> answers_;
  std::size_t transfers_ = 0;
  std::size_t transfersToCall_ = 0;
  void (*call_)() = nullptr;
};

}  // namespace pmddb832::fuzz
