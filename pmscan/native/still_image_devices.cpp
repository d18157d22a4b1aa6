#include "pmscan/devices/still_image_devices.h"

#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {

std::vector<StillImageEntry> StillImageDevices() {
  throw Failure(kDeviceUnavailable, "This system has no still-image service: Windows has one.");
}

std::unique_ptr<DeviceConnection> ConnectStillImageDevice(const std::string& /*device*/) {
  StillImageDevices();
  return nullptr;
}

}  // namespace pmscan
