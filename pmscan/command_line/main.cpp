#include <algorithm>
#include <exception>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "pmscan/captures/capture_session.h"
#include "pmscan/captures/dry_run.h"
#include "pmscan/captures/file_commands.h"
#include "pmscan/captures/import_command.h"
#include "pmscan/captures/replay_command.h"
#include "pmscan/command_line/command_line.h"
#include "pmscan/command_line/console.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/help_text.h"
#include "pmscan/command_line/named_files.h"
#include "pmscan/command_line/profiles_command.h"
#include "pmscan/command_line/progress.h"
#include "pmscan/command_line/system_services.h"
#include "pmscan/devices/bed_teller.h"
#include "pmscan/devices/device_connection.h"
#include "pmscan/devices/devices_command.h"
#include "pmscan/devices/watched_device.h"
#include "pmscan/maintenance/maintenance.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/report/json_report.h"
#include "pmscan/report/report.h"
#include "pmscan/scan/module_exports.h"
#include "pmscan/scan/module_library.h"
#include "pmscan/scan/scan_command.h"
#include "pmscan/scan/scan_profile.h"
#include "pmscan/scan/session.h"
#include "pmscan/scan/watched_work.h"

namespace pmscan {
namespace {

void Connect(pmddb832::StillImageDevice& device, const std::string& modelId,
             pmddb832::ScannerSettings& settings) {
  settings.deviceInterface = &device;
  settings.useDeviceInterface = 1;
  std::copy_n(modelId.begin(), std::min(modelId.size(), sizeof(settings.modelId) - 1),
              settings.modelId);
}

void RunInfo(const Options& options, const ModuleExports& module,
             pmddb832::ScannerSettings& settings, Json& report) {
  const Session session(module, settings);
  const ScannerFacts facts = AskScanner(module, settings);
  if (options.isJson) {
    report = ScannerJson(facts);
  } else {
    std::cout << ScannerReport(facts);
  }
}

// The start is kept from the scanner, and the module fails for that reason.
void RunDry(const Options& options, const Surroundings& with, pmddb832::ScannerSettings& settings,
            Json& report) {
  pmddb832::StillImageDevice& scanner = *settings.deviceInterface;
  DryRunDevice device(scanner);
  settings.deviceInterface = &device;
  std::optional<Failure> failure;
  try {
    PrepareScan(options, with, settings);
  } catch (const Failure& reason) {
    if (!device.HasReachedStart()) failure.emplace(reason);
  }
  settings.deviceInterface = &scanner;
  if (options.isJson) {
    report = DryRunJson(device.Recording());
  } else {
    std::cout << DryRunReport(device.Recording());
  }
  if (failure) throw Failure(*failure);
}

// What is neither a scan nor a report on the scanner.
void RunMaintenance(const Options& options, const ModuleExports& module,
                    pmddb832::ScannerSettings& settings, Json& report) {
  std::string done;
  if (options.command == Command::kFocus) {
    done = FocusScanner(module, settings, *options.focus, report);
  } else if (options.command == Command::kFeed) {
    done = FeedPage(module, settings, report);
  } else if (options.command == Command::kEject) {
    done = EjectPage(module, settings, report);
  } else {
    done = ResetScanner(module, settings, report);
  }
  if (!options.isJson) std::cout << done << "\n";
}

void RunCommand(const Options& options, const Surroundings& with,
                pmddb832::ScannerSettings& settings, Json& report) {
  if (options.command == Command::kInfo) return RunInfo(options, with.module, settings, report);
  if (options.command != Command::kScan) {
    return RunMaintenance(options, with.module, settings, report);
  }
  if (options.isDryRun) return RunDry(options, with, settings, report);
  RunScanCommand(options, with, settings, report);
}

// Of a scanner that failed: the transfer, and how to see what was said. Of one that refused what
// came: that alone.
Failure Explained(const Failure& failure, const std::string& transfer,
                  const std::optional<Failure>& refusal, const Options& options) {
  if (failure.code > kUnknownError) return Failure(failure);
  std::string detail = failure.what();
  if (refusal) {
    return Failure(refusal->code, refusal->what() + (detail.empty() ? "" : " " + detail));
  }
  if (!transfer.empty()) detail += (detail.empty() ? "" : " ") + ("On the cable " + transfer + ".");
  const std::string& file = options.capture.file;
  detail += (detail.empty() ? "" : " ") +
            (file.empty() ? "To see what was said, add --capture FILE, then: pmscan decode FILE."
                          : "To see what was said: pmscan decode " + file);
  return Failure(failure.code, detail);
}

int Report(const Failure& failure) {
  std::cerr << Describe(failure);
  return FindErrorCode(failure.code).ExitCode();
}

// What stands on the scanner's side of the module.
struct ScannerSide {
  const BedTeller& bed;
  CaptureSession* capture;  // records what goes on; null where nothing does
  ProgressMeter& progress;
};

void RunWithModule(const Options& options, const ScannerSide& side,
                   pmddb832::ScannerSettings& settings, Json& report) {
  const ModuleLibrary library(options.modulePath);
  const ModuleExports module = BindExports([&](const char* name) { return library.Find(name); });
  const ModuleExports called = side.capture == nullptr ? module : side.capture->Attach(module);
  RunCommand(options, {called, side.bed, side.progress}, settings, report);
}

// The command as it was given, for the capture.
std::string CommandText() {
  std::string text = "pmscan";
  for (const std::string& argument : CommandLineArguments()) text += " " + argument;
  return text;
}

// The page is still being drawn.
[[noreturn]] void GiveUp(const Options& options, ProgressMeter& progress, Json& report) {
  progress.EndLine();
  const Failure failure(kInterrupted, "Nothing was saved.");
  const int exitCode = Report(failure);
  report["error"] = FailureJson(failure);
  report["exitCode"] = exitCode;
  if (options.isJson) std::cout << JsonText(report);
  EndProgram(exitCode);
}

// Takes as long as it takes to draw the page that lies there.
std::unique_ptr<DeviceConnection> ConnectWatched(const Options& options, ProgressMeter& progress,
                                                 Json& report) {
  progress.Await(kPreparing);
  std::unique_ptr<DeviceConnection> connection;
  WatchManners manners;
  manners.isInterrupted = &IsInterrupted;
  manners.tick = [&progress] { progress.Tick(); };
  manners.patience = 1;
  if (RunWatched([&] { connection = ConnectDevice(options); }, manners)) return connection;
  GiveUp(options, progress, report);
}

// Runs the command and returns the exit code.
int RunWithDevice(const Options& options, Json& report) {
  if (options.command == Command::kScan && !options.isDryRun) CatchInterrupt();
  ProgressMeter progress(std::cerr, StyleFor(options), ErrorOutputColumns());
  const std::unique_ptr<DeviceConnection> connection = ConnectWatched(options, progress, report);
  // The module reads the settings until it is unloaded, so they come first; so does its device.
  pmddb832::ScannerSettings settings{};
  WatchedDevice watched(connection->Device());
  BedTeller bed(watched, options.area.has_value());
  Connect(bed, connection->ModelId(), settings);
  std::optional<CaptureSession> capture;
  if (!options.capture.file.empty()) {
    capture.emplace(options.capture, options.mayOverwrite, CommandText());
    capture->Attach(settings);
  }
  int exitCode = 0;
  try {
    RunWithModule(options, {bed, capture ? &*capture : nullptr, progress}, settings, report);
    if (capture) capture->Finish();
    if (const auto refusal = connection->Refusal()) throw Failure(*refusal);
  } catch (const Failure& reason) {
    progress.EndLine();
    const Failure failure =
        Explained(reason, watched.FirstFailure(), connection->Refusal(), options);
    exitCode = Report(failure);
    report["error"] = FailureJson(failure);
  }
  if (const std::optional<Failure> verdict = connection->Judge(exitCode)) {
    exitCode = Report(*verdict);
    report["error"] = FailureJson(*verdict);
  }
  return exitCode;
}

void KeepProfile(const Options& options, Json& report) {
  const std::filesystem::path folder = ProfileFolder();
  SaveProfile(folder, options.savedProfile, options.keptOptions, options.mayOverwrite);
  report["profile"] = options.savedProfile;
  report["file"] = ProfileFile(folder, options.savedProfile);
}

int RunReporting(const Options& options, Json& report) {
  try {
    if (!options.savedProfile.empty()) KeepProfile(options, report);
    const bool isScan = options.command == Command::kScan;
    if (isScan && !options.hasOutput && !options.isDryRun) return 0;
    if (isScan) RequireRunnable(options);
    if (options.command != Command::kReplay) return RunWithDevice(options, report);
    RunReplayCommand(options, CommandText(), report);
    return 0;
  } catch (const Failure& reason) {
    const Failure failure = WithProfile(reason, options);
    report["error"] = FailureJson(failure);
    return Report(failure);
  }
}

void ListDevices(bool isJson) {
  const DeviceList list = FindDevices();
  std::cout << (isJson ? JsonText(DeviceListJson(list)) : DeviceListText(list));
}

int RunDeviceCommand(const Options& options) {
  OutliveReaders();
  const std::shared_ptr<void> services = UseSystemServices();
  if (options.command == Command::kDevices) {
    ListDevices(options.isJson);
    return 0;
  }
  Json report = Json::object();
  const int exitCode = RunReporting(options, report);
  report["exitCode"] = exitCode;
  if (options.isJson) std::cout << JsonText(report);
  return exitCode;
}

using FileCommand = void (*)(const Options&, std::ostream&);

// Reads and writes files only; null for another command.
FileCommand FileCommandOf(Command command) {
  if (command == Command::kDecode) return &RunDecodeCommand;
  if (command == Command::kReport) return &RunReportCommand;
  if (command == Command::kImport) return &RunImportCommand;
  return command == Command::kConvert ? &RunConvertCommand : nullptr;
}

int Run() {
  const Options options = ParseCommandLine(CommandLineArguments(), ProfileFolder());
  if (options.command == Command::kHelp) {
    std::cout << HelpText(options.helpOf);
    return 0;
  }
  if (options.command == Command::kVersion) {
    std::cout << "pmscan " PMSCAN_VERSION "\n";
    return 0;
  }
  if (options.command == Command::kProfiles) {
    RunProfilesCommand(options, ProfileFolder(), std::cout);
    return 0;
  }
  const FileCommand runFiles = FileCommandOf(options.command);
  if (runFiles == nullptr) return RunDeviceCommand(options);
  runFiles(options, std::cout);
  return 0;
}

int RunToItsEnd() {
  try {
    return Run();
  } catch (const Failure& failure) {
    return Report(failure);
  } catch (const std::exception& error) {
    std::cerr << "pmscan: " << error.what() << "\n";
    return FindErrorCode(kUnknownError).ExitCode();
  }
}

}  // namespace
}  // namespace pmscan

int main() {
  pmscan::JoinOutput();
  const int exitCode = pmscan::RunToItsEnd();
  if (pmscan::FlushOutput()) return exitCode;
  const int lost = pmscan::Report(
      pmscan::Failure(pmscan::kTextLost, "Standard output does not take all of the text."));
  return exitCode == 0 ? lost : exitCode;
}
