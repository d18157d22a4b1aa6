#include "pmscan/devices/device_connection.h"

#include "pmscan/command_line/failure.h"
#include "pmscan/devices/simulated_connection.h"
#include "pmscan/devices/still_image_connection.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {

std::unique_ptr<DeviceConnection> ConnectDevice(const Options& options) {
  if (IsStillImageName(options.device)) {
    if (!options.faults.empty()) {
      throw Failure(kUnsupported,
                    "--faults is for simulated scanners: choose one, as in --device "
                    "sim:extended, or leave it out.");
    }
    if (!options.original.empty()) {
      throw Failure(kUnsupported,
                    "--original lies on simulated scanners only: choose one, as in --device "
                    "sim:extended, or leave it out.");
    }
    return std::make_unique<StillImageConnection>(options.device);
  }
  return std::make_unique<SimulatedConnection>(options);
}

}  // namespace pmscan
