#pragma once

#include "capture/record/recorder.h"
#include "transport/still_image_device.h"

namespace capture {

// Stands between the module and a still-image device: passes every call on, and tells the recorder
// of each raw transfer once it is over.
class RecordingDevice final : public pmddb832::StillImageDevice {
 public:
  // Both outlive this.
  RecordingDevice(pmddb832::StillImageDevice& recordedDevice, Recorder& deviceRecorder)
      : device_(recordedDevice), recorder_(deviceRecorder) {}

  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) override;
  std::int32_t RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) override;

  // The rest goes to the device.
  std::int32_t QueryInterface(const void* interfaceId, void** object) override {
    return device_.QueryInterface(interfaceId, object);
  }
  std::uint32_t AddRef() override { return device_.AddRef(); }
  std::uint32_t Release() override { return device_.Release(); }
  std::int32_t Initialize(void* instance, const wchar_t* deviceName, std::uint32_t version,
                          std::uint32_t mode) override {
    return device_.Initialize(instance, deviceName, version, mode);
  }
  std::int32_t GetCapabilities(void* capabilities) override {
    return device_.GetCapabilities(capabilities);
  }
  std::int32_t GetStatus(void* status) override { return device_.GetStatus(status); }
  std::int32_t DeviceReset() override { return device_.DeviceReset(); }
  std::int32_t Diagnostic(void* buffer) override { return device_.Diagnostic(buffer); }
  std::int32_t Escape(std::uint32_t function, const void* input, std::uint32_t inputBytes,
                      void* output, std::uint32_t outputBytes, std::uint32_t* outputUsed) override {
    return device_.Escape(function, input, inputBytes, output, outputBytes, outputUsed);
  }
  std::int32_t GetLastError(std::uint32_t* error) override { return device_.GetLastError(error); }
  std::int32_t LockDevice(std::uint32_t timeoutMilliseconds) override {
    return device_.LockDevice(timeoutMilliseconds);
  }
  std::int32_t UnLockDevice() override { return device_.UnLockDevice(); }

 private:
  pmddb832::StillImageDevice& device_;
  Recorder& recorder_;
};

}  // namespace capture
