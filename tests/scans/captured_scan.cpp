#include "tests/scans/captured_scan.h"

#include <sstream>

#include "capture/file/capture_reader.h"
#include "capture/file/capture_writer.h"
#include "capture/record/recording_device.h"
#include "pmscan/captures/call_values.h"
#include "pmscan/captures/recording_module.h"
#include "pmscan/captures/replay.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/scan/acquisition.h"
#include "pmscan/scan/scan_request.h"
#include "pmscan/scan/session.h"
#include "tests/scans/pmscan_module.h"

namespace pmddb832::tests {
namespace {

constexpr std::uint32_t kResolution = 300;

class ForgetfulSink final : public pmscan::RowSink {
 public:
  void Write(std::span<const std::uint8_t>, std::uint32_t, std::uint32_t) override {}
};

void ScanColour(const pmscan::ModuleExports& module, ScannerSettings& settings) {
  pmscan::Session session(module, settings);
  session.Select(*pmscan::FindScanSource("flatbed"));
  const pmscan::ScanMode& mode = *pmscan::FindScanMode("colour");
  pmscan::DescribeScan({mode, kResolution, {8, 4, 40, 30}, false, false}, settings);
  const AcquisitionSetup setup = pmscan::PrepareAcquisition(module, mode.outputFormat, nullptr);
  ForgetfulSink sink;
  pmscan::AcquirePicture(module, setup, {0, {}, [] { return false; }}, sink);
}

class LineCollector final : public pmscan::PictureTaker {
 public:
  explicit LineCollector(std::vector<std::uint8_t>& collected) : lines_(collected) {}
  void Begin(const ScannerSettings&, const std::vector<capture::Value>&,
             const std::vector<capture::Value>&) override {}
  void TakeBand(const std::vector<std::uint8_t>& rows,
                const std::vector<capture::Value>& band) override {
    const std::uint32_t bytes = pmscan::ValueOf(band, "bytes");
    lines_.insert(lines_.end(), rows.begin(), rows.begin() + bytes);
  }

 private:
  std::vector<std::uint8_t>& lines_;
};

}  // namespace

capture::Capture RecordScan(StillImageDevice& scanner, bool keepsImageData) {
  capture::Capture capture;
  std::uint64_t now = 0;
  capture::Recorder recorder(
      [&capture](const capture::Entry& entry) { capture.entries.push_back(entry); },
      [&now] { return now++; }, keepsImageData);
  capture::RecordingDevice device(scanner, recorder);
  ScannerSettings settings{};
  settings.deviceInterface = &device;
  settings.useDeviceInterface = 1;
  recorder.Watch(settings);
  const ModuleUnderTest module;
  const pmscan::RecordingModule calls(ExportsOf(module), recorder);
  try {
    ScanColour(pmscan::RecordingModule::Exports(), settings);
  } catch (const pmscan::Failure&) {
    // The capture ends where the scan did.
  }
  return capture;
}

ReplayOutcome ReplayCapture(const capture::Capture& capture, bool isTolerant) {
  ReplayOutcome outcome;
  LineCollector lines(outcome.lines);
  capture::DifferenceLog log(isTolerant);
  pmscan::Replay replay(capture, "c.txt", log, &lines);
  {
    const ModuleUnderTest module;
    replay.Run(ExportsOf(module));
    replay.BeginUnload();
  }
  replay.Finish();
  outcome.report = pmscan::ReplayText(replay.Summary());
  outcome.differences = log.All();
  return outcome;
}

std::string TextOf(const capture::Capture& capture) {
  std::ostringstream stream;
  capture::CaptureWriter writer(stream, "");
  for (const capture::Entry& entry : capture.entries) writer.Add(entry);
  return stream.str();
}

capture::Capture FromText(const std::string& text) {
  std::istringstream stream(text);
  return capture::ReadCapture(stream, "c.txt");
}

capture::Capture ReadAgain(const capture::Capture& capture) {
  return FromText(TextOf(capture));
}

}  // namespace pmddb832::tests
