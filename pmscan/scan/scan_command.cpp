#include "pmscan/scan/scan_command.h"

#include <chrono>
#include <iostream>
#include <nlohmann/json.hpp>
#include <thread>

#include "pmscan/command_line/console.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/progress.h"
#include "pmscan/pictures/picture_store.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/report/report.h"
#include "pmscan/scan/batch.h"
#include "pmscan/scan/scan_plan.h"
#include "pmscan/scan/session.h"

namespace pmscan {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kPause{1};

ProgressStyle StyleFor(const Options& options) {
  const bool isTerminal = IsErrorOutputTerminal();
  const ProgressStyle usual = isTerminal ? ProgressStyle::kBar : ProgressStyle::kNone;
  const ProgressStyle style = options.progress.value_or(usual);
  return style == ProgressStyle::kBar && !isTerminal ? ProgressStyle::kLines : style;
}

// A pause that says what is waited for.
std::function<void(std::uint32_t)> Waiting(ProgressMeter& progress, const char* what,
                                           std::uint32_t seconds) {
  return [&progress, what, seconds](std::uint32_t trial) {
    progress.EndLine();
    std::cerr << what << "; waiting, " << trial << " of at most " << seconds << " s\n";
    std::this_thread::sleep_for(kPause);
  };
}

BatchManners MannersFor(const Options& options, ProgressMeter& progress) {
  BatchManners manners;
  manners.acquisition.warmUpTries = options.warmUpSeconds;
  manners.acquisition.waitForWarmUp =
      Waiting(progress, "The scanner is warming up", options.warmUpSeconds);
  manners.acquisition.isInterrupted = &IsInterrupted;
  manners.waitForPaper = Waiting(progress, "There is no paper in the feeder", options.paperSeconds);
  manners.progress = &progress;
  return manners;
}

PictureFile PictureFileFor(const Options& options, const ScanPlan& plan) {
  return {{},
          options.format,
          options.mode,
          plan.picture.resolution,
          options.mayOverwrite,
          plan.sampleBits};
}

// What was saved before a failure.
std::string SavedText(const ScanOutcome& outcome) {
  std::string text;
  for (const SavedFile& file : outcome.files) text += (text.empty() ? "" : ", ") + file.name;
  return text.empty() ? "Nothing was saved." : "Saved before that: " + text + ".";
}

Failure WithSaved(const Failure& failure, const ScanOutcome& outcome) {
  const std::string detail = failure.what();
  return Failure(failure.code, detail + (detail.empty() ? "" : " ") + SavedText(outcome));
}

// The scan of an open scanner, and the summary of it.
class ScanRun {
 public:
  ScanRun(const Options& scanOptions, const ModuleExports& moduleExports,
          pmddb832::ScannerSettings& scannerSettings, Json& jsonReport)
      : options_(scanOptions),
        module_(moduleExports),
        settings_(scannerSettings),
        json_(jsonReport) {}

  void Run(const ScanPlan& plan);

 private:
  void Summarize(const ScanRequest& request, const PictureStore& store, Clock::time_point start);

  const Options& options_;
  const ModuleExports& module_;
  const pmddb832::ScannerSettings& settings_;
  Json& json_;
  ScanOutcome outcome_;
};

void ScanRun::Run(const ScanPlan& plan) {
  const Clock::time_point start = Clock::now();
  ProgressMeter progress(std::cerr, StyleFor(options_), ErrorOutputColumns());
  PictureStore store(options_.names, PictureFileFor(options_, plan));
  const Batch batch{options_.source, plan.window, plan.asked.mode.outputFormat, options_.pages,
                    options_.paperSeconds};
  try {
    outcome_.end = ScanPages(module_, batch, MannersFor(options_, progress), store, outcome_.pages);
  } catch (const Failure& failure) {
    progress.EndLine();
    Summarize(plan.picture, store, start);
    throw WithSaved(failure, outcome_);
  }
  progress.EndLine();
  Summarize(plan.picture, store, start);
}

void ScanRun::Summarize(const ScanRequest& request, const PictureStore& store,
                        Clock::time_point start) {
  outcome_.files = store.Files();
  outcome_.formatName = options_.format.name;
  outcome_.seconds = std::chrono::duration<double>(Clock::now() - start).count();
  const ScannerFacts scanner = ReadFacts(settings_);
  if (options_.isJson) {
    json_ = ScanJson(scanner, options_.source, request, outcome_);
  } else if (!outcome_.files.empty()) {
    std::cout << ScanReport(scanner, options_.source, request, outcome_);
  }
}

void FocusFor(const Options& options, const ModuleExports& module,
              const pmddb832::ScannerSettings& settings) {
  if (options.focus->isAutomatic) std::cerr << "The scanner focuses, which takes 20 seconds.\n";
  const std::int32_t position = SetFocus(module, settings, options.source, *options.focus);
  if (options.focus->isAutomatic) std::cerr << "It focuses at " << position << ".\n";
}

// The scanner knows what it shall scan, and from where.
ScanPlan SetUp(const Options& options, const ModuleExports& module, Session& session,
               pmddb832::ScannerSettings& settings) {
  const ScanPlan plan = PlanScan(options, settings);
  session.Select(options.source);
  DescribeScan(plan.asked, settings);
  if (options.focus) FocusFor(options, module, settings);
  if (options.area && plan.missing > 0) {
    std::cerr << "Note: the scanner delivers whole groups of eight pixels; the picture ends " +
                     std::to_string(plan.missing) + " pixels before the right edge.\n";
  }
  return plan;
}

class NowhereSink : public RowSink {
 public:
  void Write(std::span<const std::uint8_t>, std::uint32_t, std::uint32_t) override {}
};

}  // namespace

void RunScanCommand(const Options& options, const ModuleExports& module, const BedTeller& bed,
                    pmddb832::ScannerSettings& settings, Json& report) {
  CatchInterrupt();
  Session session(module, settings);
  bed.CorrectLevel(settings);
  const ScanPlan plan = SetUp(options, module, session, settings);
  ScanRun(options, module, settings, report).Run(plan);
}

void PrepareScan(const Options& options, const ModuleExports& module, const BedTeller& bed,
                 pmddb832::ScannerSettings& settings) {
  Session session(module, settings);
  bed.CorrectLevel(settings);
  const ScanPlan plan = SetUp(options, module, session, settings);
  const std::uint32_t status = module.getOptionStatus(options.source.code);
  if (status != 0) throw Failure(status);
  NowhereSink sink;
  AcquisitionManners manners;
  manners.isInterrupted = [] { return false; };
  AcquirePicture(module, PrepareAcquisition(module, plan.asked.mode.outputFormat, nullptr), manners,
                 sink);
}

void RequireRunnable(const Options& options) {
  if (options.isDryRun && !IsSimulatorName(options.device)) {
    throw Failure(kUnsupported, "--dry-run asks a simulated scanner; with " + options.device +
                                    " the commands would really be sent.");
  }
  if (options.mayOverwrite || options.isDryRun) return;
  const std::optional<std::string> file = FirstOccupied(options.names, options.pages);
  if (!file) return;
  throw Failure(kOutputFile, *file + " is there already; --overwrite replaces it.");
}

}  // namespace pmscan
