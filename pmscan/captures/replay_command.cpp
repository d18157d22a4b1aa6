#include "pmscan/captures/replay_command.h"

#include <iostream>
#include <optional>
#include <string>

#include "pmscan/captures/capture_file.h"
#include "pmscan/captures/replay.h"
#include "pmscan/captures/replayed_pictures.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/scan/module_library.h"

namespace pmscan {
namespace {

// The module is unloaded when this returns.
void Play(Replay& replay, const std::string& modulePath) {
  const ModuleLibrary library(modulePath);
  replay.Run(BindExports([&](const char* name) { return library.Find(name); }));
  replay.BeginUnload();
}

void RequireSame(const capture::DifferenceLog& log, const std::string& file) {
  for (const capture::Difference& difference : log.All()) {
    std::cerr << Describe(difference, file) << "\n";
  }
  if (log.IsOver()) throw Failure(kReplayDiffers, "The replay ended at this first difference.");
  const std::size_t count = log.All().size();
  if (count == 0) return;
  throw Failure(kReplayDiffers,
                count == 1 ? "There is one difference, shown above."
                           : "There are " + std::to_string(count) + " differences, shown above.");
}

}  // namespace

void RunReplayCommand(const Options& options) {
  const std::string& file = options.readCapture;
  const capture::Capture capture = ReadCaptureFile(file);
  capture::DifferenceLog log(options.isTolerant);
  std::optional<ReplayedPictures> pictures;
  if (!options.replayedPicture.empty()) {
    pictures.emplace(options.replayedPicture, options.mayOverwrite);
  }
  Replay replay(capture, file, log, pictures.has_value() ? &*pictures : nullptr);
  Play(replay, options.modulePath);
  replay.Finish();
  if (!log.IsOver()) std::cout << replay.Report();
  RequireSame(log, file);
  if (pictures.has_value()) pictures->Commit();
}

}  // namespace pmscan
