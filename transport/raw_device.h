#pragma once

#include <cstdint>

#include "transport/still_image_device.h"

namespace pmddb832 {

// A still-image device that only moves raw bytes: it counts no references, knows no other
// interface, and the other entries are not implemented.
class RawDevice : public StillImageDevice {
 public:
  std::int32_t QueryInterface(const void*, void**) override {
    Called("QueryInterface");
    return kNoInterface;
  }
  std::uint32_t AddRef() override { return OneReference("AddRef"); }
  std::uint32_t Release() override { return OneReference("Release"); }
  std::int32_t Initialize(void*, const wchar_t*, std::uint32_t, std::uint32_t) override {
    return NotImplemented("Initialize");
  }
  std::int32_t GetCapabilities(void*) override { return NotImplemented("GetCapabilities"); }
  std::int32_t GetStatus(void*) override { return NotImplemented("GetStatus"); }
  std::int32_t DeviceReset() override { return NotImplemented("DeviceReset"); }
  std::int32_t Diagnostic(void*) override { return NotImplemented("Diagnostic"); }
  std::int32_t Escape(std::uint32_t, const void*, std::uint32_t, void*, std::uint32_t,
                      std::uint32_t*) override {
    return NotImplemented("Escape");
  }
  std::int32_t GetLastError(std::uint32_t*) override { return NotImplemented("GetLastError"); }
  std::int32_t LockDevice(std::uint32_t) override { return NotImplemented("LockDevice"); }
  std::int32_t UnLockDevice() override { return NotImplemented("UnLockDevice"); }

 protected:
  ~RawDevice() = default;

  // Told of every call of an entry that moves no bytes, by the entry's name.
  virtual void Called(const char* /*entry*/) {}

 private:
  static constexpr auto kNotImplemented = static_cast<std::int32_t>(0x80004001);
  static constexpr auto kNoInterface = static_cast<std::int32_t>(0x80004002);

  std::int32_t NotImplemented(const char* entry) {
    Called(entry);
    return kNotImplemented;
  }
  std::uint32_t OneReference(const char* entry) {
    Called(entry);
    return 1;
  }
};

}  // namespace pmddb832
