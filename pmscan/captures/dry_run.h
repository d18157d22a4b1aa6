#pragma once

#include <cstdint>
#include <string>

#include "capture/conversation/conversation.h"
#include "capture/file/capture.h"
#include "capture/record/recorder.h"
#include "pmscan/report/json_report.h"
#include "transport/still_image_device.h"

namespace pmscan {

// Stands before a scanner, records what is said to it, and lets no scan start: the command that
// would start one is recorded, not passed on, and fails; so does all that comes after it,
// unrecorded.
class DryRunDevice final : public pmddb832::StillImageDevice {
 public:
  // `passedDevice` outlives this.
  explicit DryRunDevice(pmddb832::StillImageDevice& passedDevice);

  // Its transfers, outside any call.
  const capture::Capture& Recording() const { return recording_; }
  // Whether all was sent that comes before a scan, and its start.
  bool HasReachedStart() const { return hasStarted_; }

  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) override;
  std::int32_t RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) override;

  // The module calls none of these.
  std::int32_t QueryInterface(const void*, void**) override;
  std::uint32_t AddRef() override { return 1; }
  std::uint32_t Release() override { return 1; }
  std::int32_t Initialize(void*, const wchar_t*, std::uint32_t, std::uint32_t) override;
  std::int32_t GetCapabilities(void*) override;
  std::int32_t GetStatus(void*) override;
  std::int32_t DeviceReset() override;
  std::int32_t Diagnostic(void*) override;
  std::int32_t Escape(std::uint32_t, const void*, std::uint32_t, void*, std::uint32_t,
                      std::uint32_t*) override;
  std::int32_t GetLastError(std::uint32_t*) override;
  std::int32_t LockDevice(std::uint32_t) override;
  std::int32_t UnLockDevice() override;

 private:
  pmddb832::StillImageDevice& device_;
  capture::Capture recording_;
  capture::Recorder recorder_;
  capture::Conversation conversation_;
  bool hasStarted_ = false;
};

// Every command that was sent, by its name with its bytes, and its parameters one by one.
std::string DryRunReport(const capture::Capture& recording);
Json DryRunJson(const capture::Capture& recording);

}  // namespace pmscan
