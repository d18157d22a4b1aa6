#include "simulator/faults/fault_injector.h"

// What the fault injector leaves to the scanner.

namespace simulator {

std::int32_t FaultInjector::QueryInterface(const void* interfaceId, void** object) {
  return scanner_.QueryInterface(interfaceId, object);
}

std::uint32_t FaultInjector::AddRef() {
  return scanner_.AddRef();
}

std::uint32_t FaultInjector::Release() {
  return scanner_.Release();
}

std::int32_t FaultInjector::Initialize(void* instance, const wchar_t* deviceName,
                                       std::uint32_t version, std::uint32_t mode) {
  return scanner_.Initialize(instance, deviceName, version, mode);
}

std::int32_t FaultInjector::GetCapabilities(void* capabilities) {
  return scanner_.GetCapabilities(capabilities);
}

std::int32_t FaultInjector::GetStatus(void* status) {
  return scanner_.GetStatus(status);
}

std::int32_t FaultInjector::DeviceReset() {
  return scanner_.DeviceReset();
}

std::int32_t FaultInjector::Diagnostic(void* buffer) {
  return scanner_.Diagnostic(buffer);
}

std::int32_t FaultInjector::Escape(std::uint32_t function, const void* input,
                                   std::uint32_t inputBytes, void* output,
                                   std::uint32_t outputBytes, std::uint32_t* outputUsed) {
  return scanner_.Escape(function, input, inputBytes, output, outputBytes, outputUsed);
}

std::int32_t FaultInjector::GetLastError(std::uint32_t* error) {
  return scanner_.GetLastError(error);
}

std::int32_t FaultInjector::LockDevice(std::uint32_t timeoutMilliseconds) {
  return scanner_.LockDevice(timeoutMilliseconds);
}

std::int32_t FaultInjector::UnLockDevice() {
  return scanner_.UnLockDevice();
}

}  // namespace simulator
