#include "pmscan/scan_command.h"

#include <chrono>
#include <iostream>
#include <optional>
#include <thread>

#include "pmscan/acquisition.h"
#include "pmscan/console.h"
#include "pmscan/picture_writer.h"
#include "pmscan/progress.h"
#include "pmscan/report.h"
#include "pmscan/scan_request.h"
#include "pmscan/session.h"

namespace pmscan {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kWarmUpPause{1};

ScanRequest RequestFor(const Options& options, const pmddb832::ScannerSettings& settings) {
  const BedSize bed = RequireFitted(options.source, settings);
  RequireResolution(options.dotsPerInch, settings);
  RequireMode(options.mode, settings);
  ScanRequest request{options.mode, options.dotsPerInch,
                      PlaceArea(options.area, bed, options.dotsPerInch), options.isMirrored,
                      options.isInverted};
  if (request.isInverted) {
    request.area = TrimToGroups(request.area, bed, request.dotsPerInch, request.isMirrored);
  }
  RequireTransferable(request, settings);
  return request;
}

AcquisitionManners MannersFor(const Options& options) {
  AcquisitionManners manners;
  manners.warmUpTries = options.warmUpSeconds;
  manners.waitForWarmUp = [tries = options.warmUpSeconds](std::uint32_t trial) {
    std::cerr << "The scanner is warming up; waiting, " << trial << " of at most " << tries
              << " s\n";
    std::this_thread::sleep_for(kWarmUpPause);
  };
  manners.isInterrupted = &IsInterrupted;
  return manners;
}

// Returns the size of the file.
std::uint64_t ScanIntoFile(const Options& options, const ModuleExports& module,
                           const ScanRequest& request) {
  std::optional<ProgressPrinter> progress;
  if (options.showsProgress) progress.emplace(std::cerr, IsErrorOutputTerminal());
  const pmddb832::AcquisitionSetup setup = PrepareAcquisition(
      module, request.mode.outputFormat, progress ? &ProgressPrinter::OnProgress : nullptr);
  PictureWriter writer(options.output, options.format, request.mode, setup.widthPixels,
                       setup.heightLines, request.dotsPerInch);
  AcquirePicture(module, setup, MannersFor(options), writer);
  return writer.Commit();
}

}  // namespace

void RunScanCommand(const Options& options, const ModuleExports& module,
                    pmddb832::ScannerSettings& settings) {
  const Clock::time_point start = Clock::now();
  CatchInterrupt();
  Session session(module, settings);
  const ScanRequest request = RequestFor(options, settings);
  session.Select(options.source);
  DescribeScan(request, settings);
  ScanOutcome outcome{options.output, std::string(options.format.name)};
  outcome.fileBytes = ScanIntoFile(options, module, request);
  outcome.seconds = std::chrono::duration<double>(Clock::now() - start).count();
  std::cout << ScanReport(settings, options.source, request, outcome);
}

}  // namespace pmscan
