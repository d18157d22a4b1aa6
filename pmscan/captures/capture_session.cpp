#include "pmscan/captures/capture_session.h"

#include <cerrno>
#include <system_error>

#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/file_name.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {

CaptureSession::CaptureSession(const CaptureChoice& choice, bool mayOverwrite,
                               const std::string& remarks)
    : name_(choice.file),
      start_(std::chrono::steady_clock::now()),
      recorder_([this](const capture::Entry& entry) { writer_->Add(entry); },
                [this] { return Microseconds(); }, choice.keepsImageData) {
  const std::filesystem::path path = PathOf(name_);
  std::error_code ignored;
  if (!mayOverwrite && std::filesystem::exists(path, ignored)) {
    throw Failure(kCaptureUnwritable, name_ + " is there already; --overwrite replaces it.");
  }
  stream_.open(path, std::ios::binary);
  if (!stream_) {
    throw Failure(kCaptureUnwritable, name_ + " does not open for writing: " +
                                          std::generic_category().message(errno) + ".");
  }
  writer_.emplace(stream_, remarks);
}

std::uint64_t CaptureSession::Microseconds() const {
  using std::chrono::microseconds;
  const auto passed = std::chrono::steady_clock::now() - start_;
  return static_cast<std::uint64_t>(std::chrono::duration_cast<microseconds>(passed).count());
}

void CaptureSession::Attach(pmddb832::ScannerSettings& settings) {
  device_.emplace(*settings.deviceInterface, recorder_);
  settings.deviceInterface = &*device_;
  recorder_.Watch(settings);
}

ModuleExports CaptureSession::Attach(const ModuleExports& module) {
  calls_.emplace(module, recorder_);
  return RecordingModule::Exports();
}

void CaptureSession::Finish() const {
  if (writer_->IsGood()) return;
  throw Failure(kCaptureUnwritable, name_ + " could not be written to its end.");
}

}  // namespace pmscan
