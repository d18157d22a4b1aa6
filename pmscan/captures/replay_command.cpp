#include "pmscan/captures/replay_command.h"

#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "pmscan/captures/capture_file.h"
#include "pmscan/captures/capture_session.h"
#include "pmscan/captures/replay.h"
#include "pmscan/captures/replayed_pictures.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/scan/module_library.h"
#include "pmscan/scan/page_names.h"

namespace pmscan {
namespace {

// The module is unloaded when this returns.
void Play(Replay& replay, CaptureSession* capture, const std::string& modulePath) {
  const ModuleLibrary library(modulePath);
  const ModuleExports module = BindExports([&](const char* name) { return library.Find(name); });
  replay.Run(capture == nullptr ? module : capture->Attach(module));
  replay.BeginUnload();
}

void RequireSame(const capture::DifferenceLog& log) {
  if (log.IsOver()) throw Failure(kReplayDiffers, "The replay ended at this first difference.");
  const std::size_t count = log.All().size();
  if (count == 0) return;
  throw Failure(kReplayDiffers,
                count == 1 ? "There is one difference, shown above."
                           : "There are " + std::to_string(count) + " differences, shown above.");
}

// Where there are differences they are the failure, and a missing picture is only noted.
void WritePicture(ReplayedPictures& pictures, const capture::DifferenceLog& log, bool isTolerant) {
  if (log.IsOver()) {
    std::cerr << "Note: no picture was written, because the replay ended at a difference; "
                 "--tolerant goes on.\n";
    return;
  }
  const std::string obstacle = pictures.Obstacle(isTolerant);
  if (obstacle.empty()) {
    std::cerr << pictures.Commit();
  } else if (log.All().empty()) {
    throw Failure(kUnsupported, obstacle);
  } else {
    std::cerr << "Note: " << obstacle << "\n";
  }
}

void Tell(const Replay& replay, const capture::DifferenceLog& log, const Options& options,
          Json& report) {
  for (const capture::Difference& difference : log.All()) {
    std::cerr << Describe(difference, options.readCapture) << "\n";
  }
  if (options.isJson) {
    report = ReplayJson(replay.Summary(), log.All());
  } else {
    std::cout << ReplayText(replay.Summary()) << std::flush;
  }
}

}  // namespace

void RunReplayCommand(const Options& options, const std::string& commandText, Json& report) {
  const capture::Capture capture = ReadCaptureFile(options.readCapture);
  capture::DifferenceLog log(options.isTolerant);
  std::optional<ReplayedPictures> pictures;
  if (!options.replayedPicture.empty()) {
    RequireRoom(PageNames::Single(options.replayedPicture), 1, options.mayOverwrite);
    pictures.emplace(options.replayedPicture, options.mayOverwrite);
  }
  Replay replay(capture, options.readCapture, log, pictures.has_value() ? &*pictures : nullptr);
  std::optional<CaptureSession> session;
  if (!options.capture.file.empty()) {
    session.emplace(options.capture, options.mayOverwrite, commandText);
    session->Attach(replay.Settings());
  }
  Play(replay, session.has_value() ? &*session : nullptr, options.modulePath);
  replay.Finish();
  Tell(replay, log, options, report);
  if (session.has_value()) session->Finish();
  if (pictures.has_value()) WritePicture(*pictures, log, options.isTolerant);
  RequireSame(log);
}

}  // namespace pmscan
