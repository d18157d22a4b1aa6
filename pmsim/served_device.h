#pragma once

#include <memory>
#include <optional>
#include <string>

#include "capture/record/recording_device.h"
#include "capture/record/recording_file.h"
#include "pmsim/device_source.h"

namespace pmsim {

// The scanner of a request, and the recorder of what is said to it if the request names one.
class ServedDevice {
 public:
  // Throws as MakeDeviceSource does.
  ServedDevice(const DeviceRequest& request, const Surroundings& surroundings);

  pmddb832::StillImageDevice& Device();
  std::string ModelId() const { return source_->ModelId(); }

  // That of the source; before it, that the recording has ended too early.
  std::string Complaint() const;

 private:
  const std::string recordingName_;
  const std::unique_ptr<DeviceSource> source_;
  std::optional<capture::RecordingFile> recording_;
  std::optional<capture::RecordingDevice> recorded_;
};

}  // namespace pmsim
