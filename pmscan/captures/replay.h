#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "capture/file/capture.h"
#include "capture/replay/difference.h"
#include "capture/replay/replaying_device.h"
#include "interface/scanner_settings.h"
#include "pmscan/captures/replay_report.h"
#include "pmscan/captures/replayed_calls.h"
#include "pmscan/scan/module_exports.h"

namespace pmscan {

// Takes the pictures that a replay delivers again. May throw.
class PictureTaker {
 public:
  virtual ~PictureTaker() = default;

  // A picture begins; `setup` and `arguments` are those of its PMInitAcquire.
  virtual void Begin(const pmddb832::ScannerSettings& settings,
                     const std::vector<capture::Value>& arguments,
                     const std::vector<capture::Value>& setup) = 0;
  // `rows` begins with the lines of a band, from the top when the capture's host wanted it so.
  virtual void TakeBand(const std::vector<std::uint8_t>& rows,
                        const std::vector<capture::Value>& band) = 0;
};

// Plays both ends of a capture against a module: makes the host's calls with the host's settings,
// answers as the scanner did, and compares what the module does: its transfers, the results of the
// calls that the capture tells, the settings that it writes, the checksums of the lines. These are
// compared as long as the capture holds the image data.
class Replay {
 public:
  // All of it outlives this; `captureFile` is for messages. `pictures` may be null.
  Replay(const capture::Capture& playedCapture, std::string captureFile,
         capture::DifferenceLog& differences, PictureTaker* pictureTaker);

  // Makes the calls, up to the first difference when the comparison is strict. The module keeps the
  // settings and the device, so that this lives until it is unloaded. Throws
  // Failure(kCaptureUnreadable) for a call that no host can make, and where there is none.
  void Run(const ModuleExports& module);

  // To be called after Run and before the module is unloaded; after that, Finish.
  void BeginUnload();
  void Finish();

  // What it came to. Where there are differences, it tells what the module did then.
  ReplaySummary Summary() const;

  // The record that host and module share, with the device. To be changed before Run only.
  pmddb832::ScannerSettings& Settings() { return settings_; }

 private:
  void RequireCalls() const;
  std::size_t EndOfCall(std::size_t begin) const;
  void MakeCall(CallSurroundings& host, std::size_t begin, std::size_t end);
  const capture::ExportRow& KnownCall(const capture::CallBegin& call, std::size_t entry) const;
  void Compare(const CallOutcome& outcome, std::size_t entry);
  void CompareResults(const capture::CallEnd& expected, const CallOutcome& outcome,
                      std::size_t entry);
  void CompareChecksum(const capture::CallEnd& expected, const CallOutcome& outcome,
                       std::size_t entry);
  void CompareSettings(std::size_t begin, std::size_t end, const std::string& call);
  void TakePicture(const CallSurroundings& host, const capture::CallBegin& call,
                   const CallOutcome& outcome);
  void CountLines(const capture::CallBegin& call, const CallOutcome& outcome);
  bool HostAsksNext(std::size_t end) const;
  void Tell(const capture::CallBegin& call, const CallOutcome& outcome, std::size_t end,
            const ModuleExports& module);

  const capture::Capture& capture_;
  const std::string file_;
  capture::DifferenceLog& log_;
  PictureTaker* const pictures_;
  capture::ReplayingDevice device_;
  pmddb832::ScannerSettings settings_{};
  pmddb832::ScannerSettings expectedSettings_{};
  std::size_t behindCalls_ = 0;  // the entry behind the last call that was made
  std::uint32_t calls_ = 0;
  std::uint32_t checksums_ = 0;
  bool endsInCall_ = false;
  bool hasFailed_ = false;  // a call behind the first difference did
  ReplaySummary summary_;   // as far as it is told by the calls
};

}  // namespace pmscan
