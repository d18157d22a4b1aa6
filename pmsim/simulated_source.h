#pragma once

#include <string>

#include "pmsim/device_source.h"
#include "simulator/catalog/simulation.h"
#include "simulator/faults/fault_injector.h"

namespace pmsim {

// A simulated scanner, with faults on its cable.
class SimulatedSource final : public DeviceSource {
 public:
  // Throws as MakeDeviceSource does.
  SimulatedSource(const DeviceRequest& request, const Surroundings& surroundings);

  pmddb832::StillImageDevice& Device() override { return cable_; }
  std::string ModelId() const override { return simulation_.modelId; }
  std::string Complaint() const override;

 private:
  const simulator::Simulation simulation_;
  simulator::FaultInjector cable_;
};

}  // namespace pmsim
