#pragma once

#include <string>

#include "capture/replay/captured_scanner.h"
#include "capture/replay/difference.h"
#include "capture/replay/replaying_device.h"
#include "pmscan/devices/device_connection.h"

namespace pmscan {

// Whether the device is a captured one: "capture:...".
bool IsCaptureName(const std::string& device);

// The scanner of a capture, recorded or imported: it says what it said there, transfer by transfer,
// whoever the host was then. Strictly the first transfer of another kind fails, and all behind it;
// tolerantly it finds its way as a replay does.
class CapturedConnection : public DeviceConnection {
 public:
  // `device` is "capture:FILE". Throws Failure(kCaptureUnreadable), also where the file holds no
  // transfers.
  CapturedConnection(const std::string& device, bool isTolerant);

  pmddb832::StillImageDevice& Device() override { return device_; }
  // That of the capture's host, where it is told.
  std::string ModelId() const override { return scanner_.modelId; }
  // The first difference, when the capture is played strictly.
  std::optional<Failure> Refusal() const override;
  // A strict difference weighs more than what went wrong; tolerant ones are told and change
  // nothing.
  std::optional<Failure> Judge(int exitCode) const override;

 private:
  const std::string file_;
  const capture::CapturedScanner scanner_;
  capture::DifferenceLog log_;
  capture::ReplayingDevice device_;
};

}  // namespace pmscan
