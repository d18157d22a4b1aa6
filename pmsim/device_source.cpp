#include "pmsim/device_source.h"

#include "pmsim/captured_source.h"
#include "pmsim/simulated_source.h"
#include "simulator/catalog/nearest_name.h"

namespace pmsim {

std::unique_ptr<DeviceSource> MakeDeviceSource(const DeviceRequest& request,
                                               const Surroundings& surroundings) {
  if (simulator::BeginsWithName(request.device, simulator::kDevicePrefix)) {
    return std::make_unique<SimulatedSource>(request, surroundings);
  }
  if (simulator::BeginsWithName(request.device, kCapturePrefix)) {
    return std::make_unique<CapturedSource>(request);
  }
  throw RequestError("there is no device \"" + request.device +
                     "\": expected a simulated scanner, as in sim:extended or sim:FILE.json, or a "
                     "captured one, as in capture:FILE");
}

}  // namespace pmsim
