#include "pmscan/scan/scan_command.h"

#include <chrono>
#include <iostream>
#include <nlohmann/json.hpp>

#include "capture/file/number_text.h"
#include "pmscan/command_line/console.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/progress.h"
#include "pmscan/devices/still_image_device_names.h"
#include "pmscan/pictures/picture_origin.h"
#include "pmscan/pictures/picture_store.h"
#include "pmscan/pictures/temporary_file.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/report/report.h"
#include "pmscan/scan/batch.h"
#include "pmscan/scan/guarded_store.h"
#include "pmscan/scan/scan_plan.h"
#include "pmscan/scan/session.h"
#include "pmscan/scan/watched_work.h"

namespace pmscan {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPause{1000};

// A pause that says what is waited for.
std::function<void(std::uint32_t)> Waiting(ProgressMeter& progress, const char* what,
                                           std::uint32_t seconds) {
  return [&progress, what, seconds](std::uint32_t trial) {
    progress.Say(std::string(what) + "; waiting, " + std::to_string(trial) + " of at most " +
                 std::to_string(seconds) + " s");
    PauseUnlessInterrupted(kPause);
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

PictureFile PictureFileFor(const Options& options, const ScanPlan& plan,
                           const pmddb832::ScannerSettings& settings) {
  PictureFile file{{},
                   options.format,
                   options.mode,
                   plan.picture.resolution,
                   options.mayOverwrite,
                   plan.sampleBits};
  if (options.quality > 0) file.quality = options.quality;
  file.origin = OriginOf(settings);
  return file;
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

// The module waits for automatic focus, also for one of a scan that is only tried out.
void FocusFor(const Options& options, const Surroundings& with,
              const pmddb832::ScannerSettings& settings) {
  const bool isAutomatic = options.focus->isAutomatic;
  if (isAutomatic && options.isDryRun) {
    RequireFocus(with.module, settings, options.source);
    with.progress.Note(
        "Note: automatic focus, which takes 20 seconds, is left out: the settings of the scan, "
        "ESC p with FF, and ESC q.");
    return;
  }
  if (isAutomatic) {
    with.progress.Note("The scanner focuses, which takes 20 seconds.");
    with.progress.Await("Focusing");
  }
  const std::int32_t position = SetFocus(with.module, settings, options.source, *options.focus);
  if (!isAutomatic) return;
  with.progress.Note("The scanner focuses at " + std::to_string(position) + ".");
  with.progress.Await(kPreparing);
}

// The scanner knows what it shall scan, and from where.
ScanPlan SetUp(const Options& options, const Surroundings& with, Session& session,
               pmddb832::ScannerSettings& settings) {
  const ScanPlan plan = PlanScan(options, settings);
  session.Select(options.source);
  DescribeScan(plan.asked, settings);
  if (options.focus) FocusFor(options, with, settings);
  if (plan.missing > 0) {
    with.progress.Note(
        "Note: the scanner delivers whole groups of eight pixels; the picture ends " +
        capture::Counted(plan.missing, "pixel") + " before the right edge.");
  }
  return plan;
}

// A scan, and the summary of it.
class ScanRun {
 public:
  ScanRun(const Options& scanOptions, const Surroundings& surroundings,
          pmddb832::ScannerSettings& scannerSettings, Json& jsonReport)
      : options_(scanOptions), with_(surroundings), settings_(scannerSettings), json_(jsonReport) {}

  void Run();

 private:
  void Work();
  void ScanPagesOfPlan();
  void Summarize(const ScanOutcome& outcome);
  [[noreturn]] void GiveUp();

  const Options& options_;
  const Surroundings& with_;
  pmddb832::ScannerSettings& settings_;
  Json& json_;
  std::optional<PictureStore> pictures_;
  GuardedStore store_;
  ScanPlan plan_;
  Clock::time_point start_ = Clock::now();
};

void ScanRun::Run() {
  WatchManners manners;
  manners.isInterrupted = &IsInterrupted;
  manners.tick = [this] { with_.progress.Tick(); };
  manners.whenInterrupted = [this] { with_.progress.Say("Stopping; Ctrl+C again ends at once."); };
  if (!RunWatched([this] { Work(); }, manners)) GiveUp();
}

void ScanRun::Work() {
  Session session(with_.module, settings_);
  with_.bed.CorrectLevel(settings_);
  plan_ = SetUp(options_, with_, session, settings_);
  pictures_.emplace(options_.names, PictureFileFor(options_, plan_, settings_));
  store_.Guard(*pictures_);
  start_ = Clock::now();
  ScanPagesOfPlan();
}

void ScanRun::ScanPagesOfPlan() {
  const Batch batch{options_.source, plan_.window,          plan_.asked.mode.outputFormat,
                    options_.pages,  options_.paperSeconds, options_.keepsPartial};
  ScanOutcome outcome;
  std::optional<Failure> failure;
  try {
    outcome.end =
        ScanPages(with_.module, batch, MannersFor(options_, with_.progress), store_, outcome.pages);
  } catch (const Failure& reason) {
    if (store_.IsClosed()) throw;
    failure.emplace(reason);
  }
  with_.progress.EndLine();
  outcome.files = store_.Files();
  Summarize(outcome);
  if (failure) throw WithSaved(*failure, outcome);
}

void ScanRun::Summarize(const ScanOutcome& outcome) {
  ScanOutcome timed = outcome;
  timed.formatName = options_.format.name;
  timed.seconds = std::chrono::duration<double>(Clock::now() - start_).count();
  const ScannerFacts scanner = ReadFacts(settings_);
  if (options_.isJson) {
    json_ = ScanJson(scanner, options_.source, plan_.picture, timed);
  } else if (!timed.files.empty()) {
    const bool isPictureThere = options_.names.Of(1) == kStandardOutput;
    (isPictureThere ? std::cerr : std::cout)
        << ScanReport(scanner, options_.source, plan_.picture, timed);
  }
}

// The module waits for the scanner, and nobody can tell it not to.
void ScanRun::GiveUp() {
  ScanOutcome outcome;
  outcome.pages = store_.Close();
  outcome.files = store_.Files();
  with_.progress.EndLine();
  if (!outcome.pages.empty()) Summarize(outcome);
  const Failure failure = WithSaved(
      Failure(kInterrupted, "The scanner does not answer, and was not told to stop."), outcome);
  std::cerr << Describe(failure);
  const int exitCode = FindErrorCode(failure.code).ExitCode();
  if (options_.isJson) {
    json_["error"] = FailureJson(failure);
    json_["exitCode"] = exitCode;
    std::cout << JsonText(json_);
  }
  EndProgram(exitCode);
}

class NowhereSink : public RowSink {
 public:
  void Write(std::span<const std::uint8_t>, std::uint32_t, std::uint32_t) override {}
};

}  // namespace

ProgressStyle StyleFor(const Options& options) {
  if (options.command != Command::kScan || options.isDryRun) return ProgressStyle::kNone;
  const bool isTerminal = IsErrorOutputTerminal();
  const ProgressStyle usual = isTerminal ? ProgressStyle::kBar : ProgressStyle::kNone;
  const ProgressStyle style = options.progress.value_or(usual);
  return style == ProgressStyle::kBar && !isTerminal ? ProgressStyle::kLines : style;
}

void RunScanCommand(const Options& options, const Surroundings& with,
                    pmddb832::ScannerSettings& settings, Json& report) {
  ScanRun(options, with, settings, report).Run();
}

void PrepareScan(const Options& options, const Surroundings& with,
                 pmddb832::ScannerSettings& settings) {
  const ModuleExports& module = with.module;
  Session session(module, settings);
  with.bed.CorrectLevel(settings);
  const ScanPlan plan = SetUp(options, with, session, settings);
  const std::uint32_t status = module.getOptionStatus(options.source.code);
  if (status != 0) throw Failure(status);
  NowhereSink sink;
  AcquisitionManners manners;
  manners.isInterrupted = [] { return false; };
  AcquirePicture(module, PrepareAcquisition(module, plan.asked.mode.outputFormat, nullptr), manners,
                 sink);
}

void RequireRunnable(const Options& options) {
  if (options.isDryRun && IsStillImageName(options.device)) {
    throw Failure(kUnsupported, "--dry-run asks a simulated or captured scanner; with " +
                                    options.device + " the commands would really be sent.");
  }
  if (options.isDryRun) return;
  if (options.names.Of(1) == kStandardOutput) const TemporaryFile trial;
  RequireRoom(options.names, options.pages, options.mayOverwrite);
}

}  // namespace pmscan
