#pragma once

#include <optional>
#include <string>

#include "capture/record/recording_device.h"
#include "capture/record/recording_file.h"
#include "interface/scanner_settings.h"
#include "pmscan/captures/capture_choice.h"
#include "pmscan/captures/recording_module.h"
#include "pmscan/scan/module_exports.h"

namespace pmscan {

// Records into a file all that goes on between pmscan, module and device, as long as it lives. The
// module keeps the device, so that this lives until it is unloaded.
class CaptureSession {
 public:
  // `remarks` stand as comments at the file's beginning. Throws Failure(kFileUnwritable).
  CaptureSession(const CaptureChoice& choice, bool mayOverwrite, const std::string& remarks);

  // Puts itself between the module and the device that the settings name.
  void Attach(pmddb832::ScannerSettings& settings);
  ModuleExports Attach(const ModuleExports& module);

  // Throws Failure(kFileUnwritable) when something did not get into the file.
  void Finish() const;

 private:
  const std::string name_;
  std::optional<capture::RecordingFile> file_;
  std::optional<capture::RecordingDevice> device_;
  std::optional<RecordingModule> calls_;
};

}  // namespace pmscan
