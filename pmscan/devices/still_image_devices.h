#pragma once

#include <memory>
#include <string>
#include <vector>

#include "pmscan/devices/device_connection.h"
#include "pmscan/devices/still_image_device_names.h"

namespace pmscan {

// Every device that the system's still-image service knows. Throws Failure(kDeviceUnavailable) when
// the system has no such service, or it fails.
std::vector<StillImageEntry> StillImageDevices();

// Connects "sti:NAME", open for data and for this program alone. Throws Failure: kUsage when there
// is no such device, kDeviceUnavailable when there is no service, or the device does not open or is
// in use.
std::unique_ptr<DeviceConnection> ConnectStillImageDevice(const std::string& device);

}  // namespace pmscan
