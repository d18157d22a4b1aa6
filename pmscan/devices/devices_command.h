#pragma once

#include "pmscan/devices/device_list.h"

namespace pmscan {

// What --device can name here: the simulated scanners, and the still-image devices of the system.
DeviceList FindDevices();

}  // namespace pmscan
