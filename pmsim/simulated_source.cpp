#include "pmsim/simulated_source.h"

#include "simulator/catalog/profile_error.h"
#include "simulator/page/test_page.h"

namespace pmsim {
namespace {

// Nobody knows yet how finely the page will be scanned.
constexpr std::uint32_t kTestPageDotsPerInch = 300;

simulator::SimulationRequest SimulationOf(const DeviceRequest& request,
                                          const Surroundings& surroundings) {
  return {.name = request.device.substr(simulator::kDevicePrefix.size()),
          .faultScript = request.faultScript,
          .original = request.original,
          .scannerFiles = surroundings.scannerFiles,
          .readPicture = surroundings.readPicture,
          .drawTestPage = [] { return simulator::RenderTestPage(kTestPageDotsPerInch); }};
}

simulator::Simulation Simulate(const DeviceRequest& request, const Surroundings& surroundings) {
  if (request.isTolerant) {
    throw RequestError(request.device +
                       " is simulated, and tolerance is for captured scanners: expected "
                       "capture:FILE, or none of it");
  }
  try {
    return simulator::Simulate(SimulationOf(request, surroundings));
  } catch (const simulator::ProfileError& error) {
    throw RequestError(error.what());
  } catch (const std::invalid_argument& reason) {
    throw RequestError(request.device + ": " + reason.what());
  }
}

}  // namespace

SimulatedSource::SimulatedSource(const DeviceRequest& request, const Surroundings& surroundings)
    : simulation_(Simulate(request, surroundings)),
      cable_(*simulation_.scanner, simulation_.faults) {}

std::string SimulatedSource::Complaint() const {
  const simulator::Scanner& scanner = *simulation_.scanner;
  if (!scanner.Violations().empty()) return "violation: " + scanner.Violations().front();
  if (!scanner.Refusals().empty()) return "the scanner refused: " + scanner.Refusals().back();
  return {};
}

}  // namespace pmsim
