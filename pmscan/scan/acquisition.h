#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "pmscan/scan/module_exports.h"
#include "transport/acquisition_records.h"

namespace pmscan {

// Takes the lines of a picture, in order from the top. May throw.
class RowSink {
 public:
  virtual ~RowSink() = default;

  // `rows` holds `lines` lines of `lineBytes` bytes; valid during the call only.
  virtual void Write(std::span<const std::uint8_t> rows, std::uint32_t lineBytes,
                     std::uint32_t lines) = 0;
};

// What the acquisition asks of its surroundings.
struct AcquisitionManners {
  std::uint32_t warmUpTries = 0;  // how often to try again while the scanner warms up
  std::function<void(std::uint32_t trial)> waitForWarmUp;  // called before each, from 1
  std::function<bool()> isInterrupted;                     // asked before each band
};

// Prepares the scan that the settings describe. Throws Failure with the module's code.
pmddb832::AcquisitionSetup PrepareAcquisition(const ModuleExports& module,
                                              std::uint32_t outputFormat,
                                              pmddb832::ProgressCallback progress);

// Scans, and hands every line to `sink`, band by band. Throws Failure: with the module's code,
// kWarmingUp when the tries are used up, kInterrupted; what came of a band that failed is handed on
// before. A scan that is under way when it or the
// sink gives up is cancelled.
void AcquirePicture(const ModuleExports& module, const pmddb832::AcquisitionSetup& setup,
                    const AcquisitionManners& manners, RowSink& sink);

}  // namespace pmscan
