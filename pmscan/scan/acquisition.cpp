#include "pmscan/scan/acquisition.h"

#include <algorithm>
#include <string>
#include <vector>

#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

constexpr std::uint32_t kBandBytes = 256 * 1024;
// The module counts the lines of a band in 16 bits.
constexpr std::uint32_t kMostBandLines = 0xFFFF;

// Cancels the scan when it is left before its end, but only when there is one under way: before
// the first band the scanner has nothing to cancel, and after a failure it has stopped by itself.
class ScanUnderWay {
 public:
  explicit ScanUnderWay(const ModuleExports& moduleExports) : module_(moduleExports) {}
  ~ScanUnderWay() {
    if (isRunning) module_.abortScan();
  }
  ScanUnderWay(const ScanUnderWay&) = delete;
  ScanUnderWay& operator=(const ScanUnderWay&) = delete;

  bool isRunning = false;

 private:
  const ModuleExports& module_;
};

void RequireSensible(const pmddb832::AcquisitionBand& band, std::uint32_t mostLines) {
  if (band.lines >= 1 && band.lines <= mostLines) return;
  throw Failure(kTransferFailed, "The module delivered " + std::to_string(band.lines) +
                                     " lines where 1 to " + std::to_string(mostLines) +
                                     " were asked for.");
}

}  // namespace

pmddb832::AcquisitionSetup PrepareAcquisition(const ModuleExports& module,
                                              std::uint32_t outputFormat,
                                              pmddb832::ProgressCallback progress) {
  pmddb832::AcquisitionSetup setup{};
  module.initAcquire(outputFormat, progress, &setup);
  if (setup.status != pmddb832::kAcquisitionGoOn || setup.lineBytes == 0) {
    throw Failure(module.getScanError());
  }
  return setup;
}

void AcquirePicture(const ModuleExports& module, const pmddb832::AcquisitionSetup& setup,
                    const AcquisitionManners& manners, RowSink& sink) {
  const std::uint32_t bandLines = std::clamp(kBandBytes / setup.lineBytes, 1u, kMostBandLines);
  std::vector<std::uint8_t> rows(std::size_t{bandLines} * setup.lineBytes);
  ScanUnderWay scan(module);
  pmddb832::AcquisitionBand band{};
  std::uint32_t trials = 0;
  while (band.done == 0) {
    if (manners.isInterrupted()) throw Failure(kInterrupted);
    module.acquireImage(rows.data(), static_cast<std::uint32_t>(rows.size()), &band);
    scan.isRunning = band.status == pmddb832::kAcquisitionGoOn && band.done == 0;
    if (band.status == pmddb832::kAcquisitionGoOn) {
      RequireSensible(band, bandLines);
      const std::size_t bytes = std::size_t{band.lines} * setup.lineBytes;
      sink.Write(std::span(rows).first(bytes), setup.lineBytes, band.lines);
      continue;
    }
    const std::uint32_t code = module.getScanError();
    if (code != kWarmingUp || trials == manners.warmUpTries) throw Failure(code);
    manners.waitForWarmUp(++trials);
  }
}

}  // namespace pmscan
