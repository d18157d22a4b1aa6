#pragma once

#include <memory>
#include <string>
#include <vector>

#include "pmscan/devices/device_connection.h"
#include "simulator/device/scanner.h"
#include "simulator/faults/fault_injector.h"

namespace pmscan {

// A simulated scanner of this process, of the catalog or by a profile, with the picture that the
// options name on its bed, and with faults on its cable.
class SimulatedConnection : public DeviceConnection {
 public:
  // Throws Failure: kUsage when there is no such scanner, kSimulation, kInputFile.
  explicit SimulatedConnection(const Options& options);

  pmddb832::StillImageDevice& Device() override { return cable_; }
  std::string ModelId() const override { return simulation_.modelId; }
  // What the module did wrong weighs more than what went wrong.
  int Judge(int exitCode) const override;

  struct Simulation {
    std::string modelId;
    std::unique_ptr<simulator::Scanner> scanner;
    std::vector<simulator::Fault> faults;
  };

 private:
  const Simulation simulation_;
  simulator::FaultInjector cable_;
};

}  // namespace pmscan
