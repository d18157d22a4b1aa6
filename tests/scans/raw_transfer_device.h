#pragma once

#include <cstdint>

#include "transport/still_image_device.h"

namespace pmddb832::tests {

// A still-image device of which only the two raw transfers exist, as far as the module is
// concerned; the rest fails.
class RawTransferDevice : public StillImageDevice {
 public:
  std::int32_t QueryInterface(const void*, void**) override { return kFailure; }
  std::uint32_t AddRef() override { return 1; }
  std::uint32_t Release() override { return 1; }
  std::int32_t Initialize(void*, const wchar_t*, std::uint32_t, std::uint32_t) override {
    return kFailure;
  }
  std::int32_t GetCapabilities(void*) override { return kFailure; }
  std::int32_t GetStatus(void*) override { return kFailure; }
  std::int32_t DeviceReset() override { return kFailure; }
  std::int32_t Diagnostic(void*) override { return kFailure; }
  std::int32_t Escape(std::uint32_t, const void*, std::uint32_t, void*, std::uint32_t,
                      std::uint32_t*) override {
    return kFailure;
  }
  std::int32_t GetLastError(std::uint32_t*) override { return kFailure; }
  std::int32_t LockDevice(std::uint32_t) override { return kFailure; }
  std::int32_t UnLockDevice() override { return kFailure; }

 protected:
  static constexpr std::int32_t kFailure = -1;
  ~RawTransferDevice() = default;
};

}  // namespace pmddb832::tests
