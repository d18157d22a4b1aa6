#include "pmscan/captures/capture_session.h"

#include "pmscan/captures/capture_file.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {

CaptureSession::CaptureSession(const CaptureChoice& choice, bool mayOverwrite,
                               const std::string& remarks)
    : name(choice.file),
      start(std::chrono::steady_clock::now()),
      recorder([this](const capture::Entry& entry) { writer->Add(entry); },
               [this] { return Microseconds(); }, choice.keepsImageData) {
  const std::filesystem::path path = PathOf(name);
  std::error_code ignored;
  if (!mayOverwrite && std::filesystem::exists(path, ignored)) {
    throw Failure(kCaptureUnwritable, name + " is there already; --overwrite replaces it.");
  }
  stream.open(path, std::ios::binary);
  if (!stream) throw Failure(kCaptureUnwritable, name + " does not open for writing.");
  writer.emplace(stream, remarks);
}

std::uint64_t CaptureSession::Microseconds() const {
  using std::chrono::microseconds;
  const auto passed = std::chrono::steady_clock::now() - start;
  return static_cast<std::uint64_t>(std::chrono::duration_cast<microseconds>(passed).count());
}

void CaptureSession::Attach(pmddb832::ScannerSettings& settings) {
  device.emplace(*settings.deviceInterface, recorder);
  settings.deviceInterface = &*device;
  recorder.Watch(settings);
}

ModuleExports CaptureSession::Attach(const ModuleExports& module) {
  calls.emplace(module, recorder);
  return CaptureCalls::Exports();
}

void CaptureSession::Finish() const {
  if (writer->IsGood()) return;
  throw Failure(kCaptureUnwritable, name + " could not be written to its end.");
}

}  // namespace pmscan
