#include "tests/interface/recording_command_set.h"

namespace pmddb832::tests {

std::uint32_t RecordingCommandSet::Note(const std::string& call) {
  calls += call + "; ";
  return result;
}

std::uint32_t RecordingCommandSet::EnableOption(Call& /*call*/, std::uint32_t value) {
  return Note("EnableOption " + std::to_string(value));
}

void RecordingCommandSet::Close(Call& /*call*/) {
  Note("Close");
}
std::uint32_t RecordingCommandSet::Open(Call& /*call*/) {
  return Note("Open");
}
std::uint32_t RecordingCommandSet::GetLastError() {
  return Note("GetLastError");
}
std::uint32_t RecordingCommandSet::AbortScan(Call& /*call*/) {
  return Note("AbortScan");
}

void RecordingCommandSet::InitAcquire(Call& /*call*/, std::uint32_t outputFormat,
                                      ProgressCallback callback, AcquisitionSetup* record) {
  Note("InitAcquire " + std::to_string(outputFormat));
  progress = callback;
  setup = record;
}

void RecordingCommandSet::AcquireImage(Call& /*call*/, std::uint8_t* to, std::uint32_t bufferBytes,
                                       AcquisitionBand* record) {
  Note("AcquireImage " + std::to_string(bufferBytes));
  buffer = to;
  band = record;
}

std::uint32_t RecordingCommandSet::GetOptionStatus(Call& /*call*/, std::uint8_t* mainStatus,
                                                   std::uint32_t option) {
  mainStatusGiven = mainStatus != nullptr;
  return Note("GetOptionStatus " + std::to_string(option));
}

std::uint8_t RecordingCommandSet::SetFocusPos(Call& /*call*/, std::uint32_t mode,
                                              std::uint8_t hostPosition) {
  Note("SetFocusPos " + std::to_string(mode) + " " + std::to_string(hostPosition));
  return position;
}

std::uint32_t RecordingCommandSet::GetScanPaperSize(Call& /*call*/, std::uint32_t option,
                                                    std::uint32_t* toWidth,
                                                    std::uint32_t* toHeight) {
  width = toWidth;
  height = toHeight;
  return Note("GetScanPaperSize " + std::to_string(option));
}

}  // namespace pmddb832::tests
