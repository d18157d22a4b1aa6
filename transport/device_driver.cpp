#include "transport/device_driver.h"

#include "interface/scanner_settings.h"
#include "platform/operating_system.h"
#include "platform/trace.h"
#include "transport/still_image_device.h"

namespace pmddb832 {
namespace {

constexpr std::uint32_t kSupportMask = 0xFFFF;
constexpr std::uint32_t kPlatformWin32s = 0;
constexpr std::uint32_t kPlatformWindows9x = 1;
constexpr std::uint32_t kPlatformNt = 2;

bool IsDirect(const ScannerSettings& settings) {
  return settings.useDeviceInterface == 0;
}

}  // namespace

DeviceDriver::DeviceDriver() {
  const TraceScope trace{"Sddnt::DeviceDriver"};
}

DeviceDriver::~DeviceDriver() {
  const TraceScope trace{"Sddnt::~DeviceDriver"};
  if (opened != 0) CloseInMode(recordAtEnd != nullptr && IsDirect(*recordAtEnd));
}

std::uint32_t DeviceDriver::Open() {
  const TraceScope trace{"Sddnt::Open"};
  opened = 1;
  return 1;
}

void DeviceDriver::Close(const ScannerSettings& settings) {
  CloseInMode(IsDirect(settings));
}

void DeviceDriver::CloseInMode(bool direct) {
  const TraceScope trace{"Sddnt::Close"};
  if (opened == 0) return;
  opened = 0;
  if (direct && closeEntry != nullptr) closeEntry(0);
}

std::uint32_t DeviceDriver::IsReady(const ScannerSettings& settings) {
  const TraceScope trace{"Sddnt::IsReady"};
  if (!IsDirect(settings)) return 1;
  return readyEntry != nullptr && readyEntry() == 0 ? 1 : 0;
}

// The channel may be gone when a transfer returns, so that nothing of it is used behind one.
std::uint32_t DeviceDriver::Read(const ScannerSettings& settings, std::uint8_t* buffer,
                                 std::uint32_t length) {
  const TraceScope trace{"Sddnt::Read"};
  if (IsDirect(settings)) return readEntry == nullptr ? kReadFailed : readEntry(buffer, length);
  StillImageDevice* const device = settings.deviceInterface;
  if (device == nullptr) return kReadFailed;
  std::uint32_t count = length;
  return device->RawReadData(buffer, &count, nullptr) < 0 ? kReadFailed : kTransferDone;
}

std::uint32_t DeviceDriver::Write(const ScannerSettings& settings, const std::uint8_t* buffer,
                                  std::uint32_t length) {
  const TraceScope trace{"Sddnt::Write"};
  if (IsDirect(settings)) return writeEntry == nullptr ? kWriteFailed : writeEntry(buffer, length);
  StillImageDevice* const device = settings.deviceInterface;
  if (device == nullptr) return kWriteFailed;
  // The interface declares its buffer as writable, but only reads it.
  auto* bytes = const_cast<std::uint8_t*>(buffer);
  return device->RawWriteData(bytes, length, nullptr) < 0 ? kWriteFailed : kTransferDone;
}

std::uint32_t DeviceDriver::GetScanServerSupportFunction() {
  const TraceScope trace{"Sddnt::GetScanServerSupportFunction"};
  return kSupportMask;
}

std::uint32_t DeviceDriver::GetOpsys() {
  const TraceScope trace{"Sddnt::GetOpsys"};
  const auto version = platform::QueryOperatingSystemVersion();
  if (!version.has_value()) return 2;
  switch (version->platformId) {
    case kPlatformWin32s:
      return 1;
    case kPlatformWindows9x:
      return version->minor < 10 ? 2 : 3;
    case kPlatformNt:
      return version->major < 5 ? 0 : 4;
    default:
      return 2;
  }
}

}  // namespace pmddb832
