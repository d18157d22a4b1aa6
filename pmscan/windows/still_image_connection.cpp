#include "pmscan/windows/still_image_connection.h"

#include "pmscan/devices/still_image_devices.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

constexpr DWORD kLockMilliseconds = 5000;

}  // namespace

StillImageConnection::StillImageConnection(const std::string& device) {
  const std::vector<StillImageEntry> entries = service_.Devices();
  const StillImageEntry& entry = FindStillImageEntry(entries, device);
  service_.Open(entry, stillImage_);
  RequireSuccess(stillImage_->LockDevice(kLockMilliseconds), kDeviceUnavailable,
                 "have the device alone: another program uses it", entry.localName);
}

StillImageConnection::~StillImageConnection() {
  stillImage_->UnLockDevice();
}

// Our declaration of the interface is that of the system by position.
pmddb832::StillImageDevice& StillImageConnection::Device() {
  return *reinterpret_cast<pmddb832::StillImageDevice*>(stillImage_.Get());
}

std::vector<StillImageEntry> StillImageDevices() {
  return StillImageService().Devices();
}

std::unique_ptr<DeviceConnection> ConnectStillImageDevice(const std::string& device) {
  return std::make_unique<StillImageConnection>(device);
}

}  // namespace pmscan
