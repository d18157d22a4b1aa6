#pragma once

#include <filesystem>
#include <string>

#include "pmscan/devices/device_connection.h"
#include "simulator/catalog/simulation.h"
#include "simulator/faults/fault_injector.h"

namespace pmscan {

// Where the scanner files are that --device finds by their names: beside this program.
std::filesystem::path ScannerFileFolder();

// A simulated scanner of this process, of the catalog or by a profile, with the picture that the
// options name on its bed, and with faults on its cable.
class SimulatedConnection : public DeviceConnection {
 public:
  // Throws Failure: kUsage when there is no such scanner, kSimulation, kInputFile.
  explicit SimulatedConnection(const Options& options);

  pmddb832::StillImageDevice& Device() override { return cable_; }
  std::string ModelId() const override { return simulation_.modelId; }
  // What the module did wrong weighs more than what went wrong.
  std::optional<Failure> Judge(int exitCode) const override;

 private:
  const simulator::Simulation simulation_;
  simulator::FaultInjector cable_;
};

}  // namespace pmscan
