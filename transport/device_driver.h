#pragma once

#include <cstdint>

namespace pmddb832 {

struct ScannerSettings;

inline constexpr std::uint32_t kTransferDone = 0;
inline constexpr std::uint32_t kWriteFailed = 3;
inline constexpr std::uint32_t kReadFailed = 4;

// The bit of the support mask that says that the extended command set can be carried.
inline constexpr std::uint32_t kExtendedSetSupported = 4;

// The device channel: moves opaque bytes to the scanner and back. In interface mode
// (ScannerSettings::useDeviceInterface) every transfer goes through the host's still-image device,
// which the host owns; in direct mode through the entry points below. The mode is read at each
// call.
class DeviceDriver {
 public:
  DeviceDriver();
  // Closes an open channel, in the mode of `recordAtEnd`.
  ~DeviceDriver();
  DeviceDriver(const DeviceDriver&) = delete;
  DeviceDriver& operator=(const DeviceDriver&) = delete;

  // Marks the channel open, in either mode without a call into the device. Always 1.
  std::uint32_t Open();
  void Close(const ScannerSettings& settings);

  // 1 when transfers can be tried, else 0. Needs no open channel.
  std::uint32_t IsReady(const ScannerSettings& settings);

  // Move exactly `length` bytes. Return kTransferDone; kReadFailed or kWriteFailed in interface
  // mode; in direct mode the entry's own status, of which 0 alone is success. How many bytes the
  // interface says it delivered is not looked at.
  std::uint32_t Read(const ScannerSettings& settings, std::uint8_t* buffer, std::uint32_t length);
  std::uint32_t Write(const ScannerSettings& settings, const std::uint8_t* buffer,
                      std::uint32_t length);

  // Mask of what the scan server can carry.
  std::uint32_t GetScanServerSupportFunction();

  // Class of the operating system: 0 NT before 5, 1 Win32s, 2 Windows 95 or unknown, 3 Windows 98
  // and ME, 4 NT 5 and later.
  std::uint32_t GetOpsys();

  std::uintptr_t deviceHandle = 0;
  std::uint32_t opened = 0;
  const ScannerSettings* recordAtEnd = nullptr;  // null counts as interface mode

  // Direct access, for whoever provides it: 0 means success. Null entries fail.
  std::uint32_t (*openEntry)() = nullptr;  // never called: Open marks the channel open without it
  void (*closeEntry)(std::uintptr_t) = nullptr;
  std::uint32_t (*readEntry)(std::uint8_t* buffer, std::uint32_t length) = nullptr;
  std::uint32_t (*writeEntry)(const std::uint8_t* buffer, std::uint32_t length) = nullptr;
  std::uint32_t (*readyEntry)() = nullptr;

 private:
  void CloseInMode(bool direct);
};

}  // namespace pmddb832
