#include "pmscan/maintenance/maintenance.h"

#include <nlohmann/json.hpp>

#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/scan/acquisition.h"
#include "pmscan/scan/scan_plan.h"
#include "pmscan/scan/session.h"

namespace pmscan {
namespace {

using pmddb832::ScannerSettings;

// A grey scan of the bed, as coarse as the scanner can.
ScanRequest CoarseScan(const ScannerSettings& settings) {
  Options options;
  options.mode = *FindScanMode("grey");
  options.source = *FindScanSource("flatbed");
  options.dotsPerInch = 0;
  return PlanScan(options, settings).asked;
}

const ScanSource& SelectFeeder(Session& session, const ScannerSettings& settings) {
  const ScanSource& feeder = *FindScanSource("feeder");
  RequireFitted(feeder, settings);
  session.Select(feeder);
  return feeder;
}

class NowhereSink : public RowSink {
 public:
  void Write(std::span<const std::uint8_t>, std::uint32_t, std::uint32_t) override {}
};

void ScanOneLine(const ModuleExports& module, ScannerSettings& settings) {
  ScanRequest line = CoarseScan(settings);
  line.area.height = 1;
  DescribeScan(line, settings);
  NowhereSink sink;
  AcquisitionManners manners;
  manners.isInterrupted = [] { return false; };
  AcquirePicture(module, PrepareAcquisition(module, line.mode.outputFormat, nullptr), manners,
                 sink);
}

}  // namespace

std::string FocusScanner(const ModuleExports& module, ScannerSettings& settings, const Focus& focus,
                         Json& report) {
  const Session session(module, settings);
  report = IdentityJson(ReadFacts(settings));
  DescribeScan(CoarseScan(settings), settings);
  const std::int32_t position =
      SetFocus(module, settings, *FindScanSource("flatbed"), focus, kFocusAnother);
  report["focus"] = position;
  return "The scanner focuses at " + std::to_string(position) + ".";
}

// The module does not tell whether the scanner drew a page in; a feeder without paper says so
// before, a jam behind.
std::string FeedPage(const ModuleExports& module, ScannerSettings& settings, Json& report) {
  Session session(module, settings);
  report = IdentityJson(ReadFacts(settings));
  const ScanSource& feeder = SelectFeeder(session, settings);
  const std::uint32_t before = module.getOptionStatus(feeder.code);
  if (before != 0) throw Failure(before);
  module.feed(nullptr);
  const std::uint32_t behind = module.getOptionStatus(feeder.code);
  if (behind != 0 && behind != kOptionEmpty) throw Failure(behind);
  return "The feeder was told to draw in a page.";
}

std::string EjectPage(const ModuleExports& module, ScannerSettings& settings, Json& report) {
  Session session(module, settings);
  report = IdentityJson(ReadFacts(settings));
  RequireFitted(*FindScanSource("feeder"), settings);
  ScanOneLine(module, settings);
  const ScanSource& feeder = SelectFeeder(session, settings);
  module.eject(nullptr);
  const std::uint32_t status = module.getOptionStatus(feeder.code);
  if (status != 0 && status != kOptionEmpty) throw Failure(status);
  return "The feeder was told to throw out its page.";
}

std::string ResetScanner(const ModuleExports& module, ScannerSettings& settings, Json& report) {
  const Session session(module, settings);
  report = IdentityJson(ReadFacts(settings));
  if (module.reset() == 0) {
    throw Failure(module.getScanError(), "The scanner did not acknowledge the reset.");
  }
  return "The scanner was put back to its beginning.";
}

}  // namespace pmscan
