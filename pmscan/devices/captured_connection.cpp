#include "pmscan/devices/captured_connection.h"

#include <algorithm>
#include <iostream>
#include <string_view>

#include "capture/file/number_text.h"
#include "pmscan/captures/capture_file.h"
#include "pmscan/captures/replay_report.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"
#include "simulator/catalog/nearest_name.h"

namespace pmscan {
namespace {

constexpr std::string_view kPrefix = "capture:";

capture::CapturedScanner ScannerIn(const std::string& file) {
  capture::CapturedScanner scanner = capture::ScannerOf(ReadCaptureFile(file));
  if (!scanner.transfers.entries.empty()) return scanner;
  throw Failure(kCaptureUnreadable,
                file + " holds no transfers, so that there is no scanner in it.");
}

}  // namespace

bool IsCaptureName(const std::string& device) {
  return simulator::BeginsWithName(device, kPrefix);
}

CapturedConnection::CapturedConnection(const std::string& device, bool isTolerant)
    : file_(device.substr(kPrefix.size())),
      scanner_(ScannerIn(file_)),
      log_(isTolerant),
      device_(scanner_.transfers, log_) {
  device_.BeginCall("", 0, scanner_.transfers.entries.size());
}

std::optional<Failure> CapturedConnection::Refusal() const {
  if (!log_.IsOver()) return std::nullopt;
  return std::optional<Failure>(
      std::in_place, kReplayDiffers,
      Describe(log_.All().front(), file_) +
          "  The captured scanner refused this transfer, and answers nothing behind it.");
}

std::optional<Failure> CapturedConnection::Judge(int exitCode) const {
  if (log_.IsOver()) {
    const bool isTold = exitCode == FindErrorCode(kReplayDiffers).ExitCode();
    return isTold ? std::nullopt : Refusal();
  }
  const std::vector<capture::Difference>& differences = log_.All();
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
  return std::nullopt;
}

}  // namespace pmscan
