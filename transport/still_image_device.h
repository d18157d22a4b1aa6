#pragma once

#include <cstdint>

namespace pmddb832 {

// The host's still-image device: a COM interface of which the module calls the thirteenth and the
// fourteenth entry only. Declared by position, so that it also compiles where COM does not exist;
// the layout of a class of plain virtual functions is that of a COM interface on x64.
// A negative result is a failure. The host owns the object; it has no virtual destructor because
// COM objects are never deleted through their interface.
class StillImageDevice {
 public:
  virtual std::int32_t QueryInterface(const void* interfaceId, void** object) = 0;
  virtual std::uint32_t AddRef() = 0;
  virtual std::uint32_t Release() = 0;
  virtual std::int32_t Initialize(void* instance, const wchar_t* deviceName, std::uint32_t version,
                                  std::uint32_t mode) = 0;
  virtual std::int32_t GetCapabilities(void* capabilities) = 0;
  virtual std::int32_t GetStatus(void* status) = 0;
  virtual std::int32_t DeviceReset() = 0;
  virtual std::int32_t Diagnostic(void* buffer) = 0;
  virtual std::int32_t Escape(std::uint32_t function, const void* input, std::uint32_t inputBytes,
                              void* output, std::uint32_t outputBytes,
                              std::uint32_t* outputUsed) = 0;
  virtual std::int32_t GetLastError(std::uint32_t* error) = 0;
  virtual std::int32_t LockDevice(std::uint32_t timeoutMilliseconds) = 0;
  virtual std::int32_t UnLockDevice() = 0;

  // Reads up to *byteCount bytes and stores the number that was delivered there. `overlapped` is
  // always null: the call returns when the transfer is over.
  virtual std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) = 0;
  virtual std::int32_t RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) = 0;

 protected:
  ~StillImageDevice() = default;
};

}  // namespace pmddb832
