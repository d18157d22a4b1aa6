#pragma once

#include <cstdint>

#include "transport/still_image_device.h"

namespace pmddb832::tests {

// A still-image device of which only the two raw transfers exist, as far as the module is
// concerned; the rest fails.
class RawTransferDevice : public StillImageDevice {
 public:
  std::int32_t QueryInterface(const void*, void**) override { return Refuse("QueryInterface"); }
  std::uint32_t AddRef() override { return Refuse("AddRef") < 0 ? 1 : 0; }
  std::uint32_t Release() override { return Refuse("Release") < 0 ? 1 : 0; }
  std::int32_t Initialize(void*, const wchar_t*, std::uint32_t, std::uint32_t) override {
    return Refuse("Initialize");
  }
  std::int32_t GetCapabilities(void*) override { return Refuse("GetCapabilities"); }
  std::int32_t GetStatus(void*) override { return Refuse("GetStatus"); }
  std::int32_t DeviceReset() override { return Refuse("DeviceReset"); }
  std::int32_t Diagnostic(void*) override { return Refuse("Diagnostic"); }
  std::int32_t Escape(std::uint32_t, const void*, std::uint32_t, void*, std::uint32_t,
                      std::uint32_t*) override {
    return Refuse("Escape");
  }
  std::int32_t GetLastError(std::uint32_t*) override { return Refuse("GetLastError"); }
  std::int32_t LockDevice(std::uint32_t) override { return Refuse("LockDevice"); }
  std::int32_t UnLockDevice() override { return Refuse("UnLockDevice"); }

 protected:
  static constexpr std::int32_t kFailure = -1;

  // What an entry answers that the module has no business with.
  virtual std::int32_t Refuse(const char* /*entry*/) { return kFailure; }

  ~RawTransferDevice() = default;
};

}  // namespace pmddb832::tests
