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

std::int32_t RecordingDevice::QueryInterface(const void* interfaceId, void** object) {
  return device_.QueryInterface(interfaceId, object);
}

std::uint32_t RecordingDevice::AddRef() {
  return device_.AddRef();
}

std::uint32_t RecordingDevice::Release() {
  return device_.Release();
}

std::int32_t RecordingDevice::Initialize(void* instance, const wchar_t* deviceName,
                                         std::uint32_t version, std::uint32_t mode) {
  return device_.Initialize(instance, deviceName, version, mode);
}

std::int32_t RecordingDevice::GetCapabilities(void* capabilities) {
  return device_.GetCapabilities(capabilities);
}

std::int32_t RecordingDevice::GetStatus(void* status) {
  return device_.GetStatus(status);
}

std::int32_t RecordingDevice::DeviceReset() {
  return device_.DeviceReset();
}

std::int32_t RecordingDevice::Diagnostic(void* buffer) {
  return device_.Diagnostic(buffer);
}

std::int32_t RecordingDevice::Escape(std::uint32_t function, const void* input,
                                     std::uint32_t inputBytes, void* output,
                                     std::uint32_t outputBytes, std::uint32_t* outputUsed) {
  return device_.Escape(function, input, inputBytes, output, outputBytes, outputUsed);
}

std::int32_t RecordingDevice::GetLastError(std::uint32_t* error) {
  return device_.GetLastError(error);
}

std::int32_t RecordingDevice::LockDevice(std::uint32_t timeoutMilliseconds) {
  return device_.LockDevice(timeoutMilliseconds);
}

std::int32_t RecordingDevice::UnLockDevice() {
  return device_.UnLockDevice();
}

}  // namespace capture
