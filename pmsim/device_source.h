#pragma once

#include <memory>
#include <string>

#include "pmsim/device_request.h"
#include "transport/still_image_device.h"

namespace pmsim {

// The scanner of a request: a simulated or a captured one.
class DeviceSource {
 public:
  virtual ~DeviceSource() = default;
  DeviceSource(const DeviceSource&) = delete;
  DeviceSource& operator=(const DeviceSource&) = delete;

  virtual pmddb832::StillImageDevice& Device() = 0;

  // The model that the host expects, at most 7 characters; empty when any will do.
  virtual std::string ModelId() const { return {}; }

  // The first thing that the driver did wrong, in a sentence, else what the scanner refused last;
  // empty when there is neither.
  virtual std::string Complaint() const = 0;

 protected:
  DeviceSource() = default;
};

// Throws RequestError; what the reader of pictures throws goes through.
std::unique_ptr<DeviceSource> MakeDeviceSource(const DeviceRequest& request,
                                               const Surroundings& surroundings);

}  // namespace pmsim
