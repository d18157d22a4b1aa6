#pragma once

#include "capture/record/recorder.h"
#include "pmscan/scan/module_exports.h"

namespace pmscan {

// The functions of a module, each of which tells a recorder when it is called and when it returns.
// Buffers and records of the host must be there: a null pointer is not passed on. The functions
// carry no context, so there is at most one of these at a time.
class RecordingModule {
 public:
  // The recorder outlives this.
  RecordingModule(const ModuleExports& recordedModule, capture::Recorder& callRecorder);
  ~RecordingModule();
  RecordingModule(const RecordingModule&) = delete;
  RecordingModule& operator=(const RecordingModule&) = delete;

  // To be called while this lives.
  static ModuleExports Exports();
};

}  // namespace pmscan
