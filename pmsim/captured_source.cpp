#include "pmsim/captured_source.h"

#include <fstream>

#include "capture/file/capture_reader.h"
#include "simulator/catalog/file_names.h"

namespace pmsim {
namespace {

void RequireNothingSimulated(const DeviceRequest& request) {
  const bool hasFaults = !request.faultScript.empty();
  if (!hasFaults && request.original.empty()) return;
  throw RequestError(request.device + " is captured, and " +
                     (hasFaults ? "faults are" : "an original is") +
                     " for simulated scanners: expected sim:NAME, or none of it");
}

capture::CapturedScanner Read(const DeviceRequest& request) {
  RequireNothingSimulated(request);
  const std::string file = request.device.substr(kCapturePrefix.size());
  std::ifstream stream(simulator::PathOf(file), std::ios::binary);
  if (!stream) throw RequestError(file + " does not open for reading: expected a capture");
  try {
    capture::CapturedScanner scanner = ScannerOf(capture::ReadCapture(stream, file));
    if (!scanner.transfers.entries.empty()) return scanner;
    throw RequestError(file + ": expected transfers, there are none");
  } catch (const capture::FormatError& error) {
    throw RequestError(error.what());
  }
}

}  // namespace

CapturedSource::CapturedSource(const DeviceRequest& request)
    : name_(request.device.substr(kCapturePrefix.size())),
      scanner_(Read(request)),
      differences_(request.isTolerant),
      device_(scanner_.transfers, differences_) {
  device_.BeginCall({}, 0, scanner_.transfers.entries.size());
}

std::string CapturedSource::Complaint() const {
  if (differences_.All().empty()) return {};
  const capture::Difference& first = differences_.All().front();
  return name_ + ", line " + std::to_string(first.line) + ": expected " + first.expected +
         ", came " + first.came;
}

}  // namespace pmsim
