#pragma once

#include <string>
#include <string_view>

#include "capture/replay/captured_scanner.h"
#include "capture/replay/replaying_device.h"
#include "pmsim/device_source.h"

namespace pmsim {

// Stands in front of the name of a capture's file.
inline constexpr std::string_view kCapturePrefix = "capture:";

// The scanner of a capture: it answers as it did when the capture was recorded. The file is read
// once, at the beginning.
class CapturedSource final : public DeviceSource {
 public:
  // Throws RequestError.
  explicit CapturedSource(const DeviceRequest& request);

  pmddb832::StillImageDevice& Device() override { return device_; }
  std::string ModelId() const override { return scanner_.modelId; }
  std::string Complaint() const override;

 private:
  const std::string name_;
  const capture::CapturedScanner scanner_;
  capture::DifferenceLog differences_;
  capture::ReplayingDevice device_;
};

}  // namespace pmsim
