#include "pmscan/captures/capture_session.h"

#include <system_error>

#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/file_name.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {

CaptureSession::CaptureSession(const CaptureChoice& choice, bool mayOverwrite,
                               const std::string& remarks)
    : name_(choice.file) {
  const std::filesystem::path path = PathOf(name_);
  std::error_code ignored;
  if (!mayOverwrite && std::filesystem::exists(path, ignored)) {
    throw Failure(kFileUnwritable, IsThereAlready(name_));
  }
  try {
    file_.emplace(path, remarks, choice.keepsImageData);
  } catch (const std::system_error& error) {
    throw Failure(kFileUnwritable,
                  name_ + ": cannot create the file: " + error.code().message() + ".");
  }
}

void CaptureSession::Attach(pmddb832::ScannerSettings& settings) {
  device_.emplace(*settings.deviceInterface, file_->Entries());
  settings.deviceInterface = &*device_;
  file_->Entries().Watch(settings);
}

ModuleExports CaptureSession::Attach(const ModuleExports& module) {
  calls_.emplace(module, file_->Entries());
  return RecordingModule::Exports();
}

void CaptureSession::Finish() const {
  if (file_->IsWhole()) return;
  throw Failure(kFileUnwritable, name_ + ": cannot write: " + file_->Reason().message() + ".");
}

}  // namespace pmscan
