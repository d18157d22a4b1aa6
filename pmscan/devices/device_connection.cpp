#include "pmscan/devices/device_connection.h"

#include "pmscan/command_line/failure.h"
#include "pmscan/devices/captured_connection.h"
#include "pmscan/devices/simulated_connection.h"
#include "pmscan/devices/still_image_devices.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {

namespace {

// What only some kinds of device have.
void RequireSimulated(const Options& options) {
  if (!options.faults.empty()) {
    throw Failure(kUnsupported,
                  "--faults is for simulated scanners: choose one, as in --device "
                  "sim:extended, or leave it out.");
  }
  if (options.original.empty()) return;
  throw Failure(kUnsupported,
                "--original lies on simulated scanners only: choose one, as in --device "
                "sim:extended, or leave it out.");
}

}  // namespace

std::unique_ptr<DeviceConnection> ConnectDevice(const Options& options) {
  if (IsCaptureName(options.device)) {
    RequireSimulated(options);
    return std::make_unique<CapturedConnection>(options.device, options.isTolerant);
  }
  if (options.isTolerant) {
    throw Failure(kUnsupported,
                  "--tolerant is for captured scanners: name one, as in --device capture:FILE, or "
                  "leave it out.");
  }
  if (IsStillImageName(options.device)) {
    RequireSimulated(options);
    return ConnectStillImageDevice(options.device);
  }
  return std::make_unique<SimulatedConnection>(options);
}

}  // namespace pmscan
