#pragma once

#include <chrono>
#include <fstream>
#include <optional>
#include <string>

#include "capture/file/capture_writer.h"
#include "capture/record/recorder.h"
#include "capture/record/recording_device.h"
#include "interface/scanner_settings.h"
#include "pmscan/captures/capture_choice.h"
#include "pmscan/captures/recording_module.h"
#include "pmscan/scan/module_exports.h"

namespace pmscan {

// Records into a file all that goes on between pmscan, module and device, as long as it lives. The
// module keeps the device, so that this lives until it is unloaded.
class CaptureSession {
 public:
  // `remarks` stand as comments at the file's beginning. Throws Failure(kCaptureUnwritable).
  CaptureSession(const CaptureChoice& choice, bool mayOverwrite, const std::string& remarks);

  // Puts itself between the module and the device that the settings name.
  void Attach(pmddb832::ScannerSettings& settings);
  ModuleExports Attach(const ModuleExports& module);

  // Throws Failure(kCaptureUnwritable) when something did not get into the file.
  void Finish() const;

 private:
  std::uint64_t Microseconds() const;

  const std::string name_;
  const std::chrono::steady_clock::time_point start_;
  std::ofstream stream_;
  std::optional<capture::CaptureWriter> writer_;
  capture::Recorder recorder_;
  std::optional<capture::RecordingDevice> device_;
  std::optional<RecordingModule> calls_;
};

}  // namespace pmscan
