#pragma once

#include <cstdint>
#include <string>

#include "capture/conversation/conversation.h"
#include "capture/file/capture.h"
#include "capture/record/recorder.h"
#include "capture/record/recording_device.h"
#include "pmscan/report/json_report.h"
#include "transport/raw_device.h"

namespace pmscan {

// Stands before a scanner, records what is said to it, and lets no scan start: the command that
// would start one is recorded, not passed on, and fails; so does all that comes after it,
// unrecorded.
class DryRunDevice final : public pmddb832::RawDevice {
 public:
  // `passedDevice` outlives this.
  explicit DryRunDevice(pmddb832::StillImageDevice& passedDevice);

  // Its transfers, outside any call.
  const capture::Capture& Recording() const { return recording_; }
  // Whether all was sent that comes before a scan, and its start.
  bool HasReachedStart() const { return hasStarted_; }

  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) override;
  std::int32_t RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) override;

 private:
  capture::Capture recording_;
  capture::Recorder recorder_;
  capture::RecordingDevice recorded_;
  capture::Conversation conversation_;
  bool hasStarted_ = false;
};

// Every command that was sent, by its name with its bytes, and its parameters one by one.
std::string DryRunReport(const capture::Capture& recording);
Json DryRunJson(const capture::Capture& recording);

}  // namespace pmscan
