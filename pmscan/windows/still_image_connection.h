#pragma once

#include <string>

#include "pmscan/devices/device_connection.h"
#include "pmscan/windows/still_image_service.h"

namespace pmscan {

// A still-image device of the system, open for data and locked for this program as long as this
// lives.
class StillImageConnection : public DeviceConnection {
 public:
  // `device` is "sti:NAME". Throws Failure: kUsage when there is no such device,
  // kDeviceUnavailable when there is no service, or the device does not open or is in use.
  explicit StillImageConnection(const std::string& device);
  ~StillImageConnection() override;

  pmddb832::StillImageDevice& Device() override;

 private:
  const StillImageService service_;
  ComPointer<IStiDevice> stillImage_;
};

}  // namespace pmscan
