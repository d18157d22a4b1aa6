#pragma once

#include <memory>
#include <optional>
#include <string>

#include "pmscan/command_line/command_line.h"
#include "pmscan/command_line/failure.h"
#include "transport/still_image_device.h"

namespace pmscan {

// The scanner of a command, connected as long as this lives.
class DeviceConnection {
 public:
  virtual ~DeviceConnection() = default;
  DeviceConnection(const DeviceConnection&) = delete;
  DeviceConnection& operator=(const DeviceConnection&) = delete;

  virtual pmddb832::StillImageDevice& Device() = 0;

  // The model that the host expects, at most 7 characters; empty when any will do.
  virtual std::string ModelId() const { return {}; }

  // Why the connection refused transfers that came to no scanner; nothing when it did not.
  virtual std::optional<Failure> Refusal() const { return std::nullopt; }

  // Says on standard error what the scanner has to say of the conversation, which ended with
  // `exitCode`, and returns what weighs more than that; nothing when nothing does.
  virtual std::optional<Failure> Judge([[maybe_unused]] int exitCode) const { return std::nullopt; }

 protected:
  DeviceConnection() = default;
};

// Connects the device that the options name: a simulated scanner, a captured one, or a still-image
// device. Throws Failure.
std::unique_ptr<DeviceConnection> ConnectDevice(const Options& options);

}  // namespace pmscan
