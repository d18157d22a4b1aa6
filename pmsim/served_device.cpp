#include "pmsim/served_device.h"

#include <system_error>

#include "simulator/catalog/file_names.h"

namespace pmsim {
namespace {

constexpr bool kKeepsImageData = true;

void RequireNoFile(const DeviceRequest& request) {
  std::error_code ignored;
  const bool isThere = std::filesystem::exists(simulator::PathOf(request.recording), ignored);
  if (!isThere || request.mayOverwrite) return;
  throw RequestError(request.recording +
                     " is there already: expected a new file, or to be told that it may be "
                     "replaced");
}

}  // namespace

ServedDevice::ServedDevice(const DeviceRequest& request, const Surroundings& surroundings)
    : recordingName_(request.recording), source_(MakeDeviceSource(request, surroundings)) {
  if (recordingName_.empty()) return;
  RequireNoFile(request);
  try {
    recording_.emplace(simulator::PathOf(recordingName_), request.device, kKeepsImageData);
  } catch (const std::system_error& error) {
    throw RequestError(recordingName_ +
                       " does not open for the capture: " + error.code().message());
  }
  recorded_.emplace(source_->Device(), recording_->Entries());
}

pmddb832::StillImageDevice& ServedDevice::Device() {
  return recorded_.has_value() ? *recorded_ : source_->Device();
}

std::string ServedDevice::Complaint() const {
  if (recording_.has_value() && !recording_->IsWhole()) {
    return recordingName_ + " could not be written on: the capture ends too early";
  }
  return source_->Complaint();
}

}  // namespace pmsim
