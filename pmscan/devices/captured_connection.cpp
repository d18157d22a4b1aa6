#include "pmscan/devices/captured_connection.h"

#include <algorithm>
#include <iostream>
#include <string_view>

#include "capture/file/number_text.h"
#include "capture/file/settings_text.h"
#include "pmscan/captures/capture_file.h"
#include "pmscan/captures/replay_report.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

using capture::Capture;

constexpr std::string_view kPrefix = "capture:";

// With the lines of the file.
Capture TransfersOf(const Capture& recorded, const std::string& file) {
  Capture transfers;
  for (std::size_t i = 0; i < recorded.entries.size(); ++i) {
    if (!std::holds_alternative<capture::Transfer>(recorded.entries[i])) continue;
    transfers.entries.push_back(recorded.entries[i]);
    transfers.lines.push_back(LineOf(recorded, i));
  }
  if (!transfers.entries.empty()) return transfers;
  throw Failure(kCaptureUnreadable,
                file + " holds no transfers, so that there is no scanner in it.");
}

}  // namespace

bool IsCaptureName(const std::string& device) {
  return device.starts_with(kPrefix);
}

CapturedConnection::CapturedConnection(const std::string& device, bool isTolerant)
    : file_(device.substr(kPrefix.size())),
      recorded_(ReadCaptureFile(file_)),
      transfers_(TransfersOf(recorded_, file_)),
      log_(isTolerant),
      device_(transfers_, log_) {
  device_.BeginCall("", 0, transfers_.entries.size());
}

std::string CapturedConnection::ModelId() const {
  pmddb832::ScannerSettings settings{};
  for (const capture::Entry& entry : recorded_.entries) {
    const auto* const change = std::get_if<capture::SettingsChange>(&entry);
    if (change != nullptr && !change->byModule) capture::Apply(*change, settings);
  }
  const std::string_view id(settings.modelId, sizeof(settings.modelId));
  return std::string(id.substr(0, id.find('\0')));
}

int CapturedConnection::Judge(int exitCode) const {
  const std::vector<capture::Difference>& differences = log_.All();
  if (log_.IsOver()) {
    std::cerr << Describe(differences.front(), file_) << "\n"
              << Describe(Failure(kReplayDiffers,
                                  "The captured scanner answers nothing behind this transfer."));
    return FindErrorCode(kReplayDiffers).ExitCode();
  }
  if (!differences.empty()) {
    std::cerr << "Note: " << capture::Counted(differences.size(), "transfer")
              << " came in another way than in the capture. The first one:\n"
              << Describe(differences.front(), file_);
  }
  if (device_.HasInvented()) {
    std::cerr << "Note: " << file_ << " holds no image data: zeros stand for the picture.\n";
  }
  if (exitCode == 0 && device_.Left() > 0) {
    std::cerr << "Note: " << capture::Counted(device_.Left(), "transfer") << " of " << file_
              << " did not come.\n";
  }
  return exitCode;
}

}  // namespace pmscan
