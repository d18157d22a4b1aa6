#include "capture/record/recorder.h"

#include <utility>

#include "capture/calls/export_table.h"
#include "capture/file/crc32.h"
#include "capture/file/settings_text.h"

namespace capture {

Recorder::Recorder(EntrySink entrySink, Clock captureClock, bool keepsAllData)
    : sink_(std::move(entrySink)), clock_(std::move(captureClock)), keepsImageData_(keepsAllData) {}

void Recorder::BeginCall(const std::string& name, const std::vector<Value>& arguments) {
  AddRecordChanges(false);
  openCall_ = name;
  sink_(CallBegin{name, arguments, clock_()});
}

void Recorder::EndCall(const std::vector<Value>& results,
                       const std::optional<std::uint32_t>& imageChecksum) {
  AddRecordChanges(true);
  sink_(CallEnd{std::exchange(openCall_, {}), results, imageChecksum, clock_()});
}

void Recorder::AddWrite(std::span<const std::uint8_t> given, std::int32_t result) {
  Transfer transfer;
  transfer.direction = Direction::kToScanner;
  transfer.requested = static_cast<std::uint32_t>(given.size());
  transfer.delivered = result < 0 ? 0 : transfer.requested;
  transfer.result = result;
  transfer.microseconds = clock_();
  transfer.bytes.emplace(given.begin(), given.end());
  transfer.checksum = Crc32(given);
  sink_(transfer);
}

void Recorder::AddRead(std::uint32_t requested, std::span<const std::uint8_t> delivered,
                       std::int32_t result) {
  Transfer transfer;
  transfer.direction = Direction::kFromScanner;
  transfer.requested = requested;
  transfer.delivered = static_cast<std::uint32_t>(delivered.size());
  transfer.result = result;
  transfer.microseconds = clock_();
  transfer.checksum = Crc32(delivered);
  const ExportRow* const call = ExportOf(openCall_);
  transfer.isImage = call != nullptr && call->fetchesImage && delivered.size() > kLongestReply;
  if (transfer.isImage) transfer.lastByte = delivered.back();
  if (!transfer.isImage || keepsImageData_) {
    transfer.bytes.emplace(delivered.begin(), delivered.end());
  }
  sink_(transfer);
}

void Recorder::AddRecordChanges(bool byModule) {
  if (watched_ == nullptr) return;
  for (const RecordChange& change : Compare(known_, *watched_, byModule)) {
    Apply(change, known_);
    sink_(change);
  }
}

}  // namespace capture
