#pragma once

#include <windows.h>
// windows.h comes first: sti.h builds on it.
#include <sti.h>

#include <string>
#include <vector>

#include "pmscan/devices/still_image_device_names.h"
#include "pmscan/windows/imaging_component.h"

namespace pmscan {

// Windows' still-image service. Its library is loaded when it is asked for, so that the program
// also starts where there is none.
class StillImageService {
 public:
  // Throws Failure(kDeviceUnavailable) when the system has no such service.
  StillImageService();
  ~StillImageService();
  StillImageService(const StillImageService&) = delete;
  StillImageService& operator=(const StillImageService&) = delete;

  // Every device that the service knows. Throws Failure(kDeviceUnavailable).
  std::vector<StillImageEntry> Devices() const;

  // Opens a device for data. Throws Failure(kDeviceUnavailable).
  void Open(const StillImageEntry& entry, ComPointer<IStiDevice>& device) const;

 private:
  HMODULE library_ = nullptr;
  ComPointer<IStillImageW> service_;
};

}  // namespace pmscan
