#include "capture/record/recorder.h"

#include <utility>

#include "capture/calls/export_table.h"
#include "capture/file/crc32.h"
#include "capture/file/settings_text.h"

namespace capture {

Recorder::Recorder(EntrySink entrySink, Clock captureClock, bool keepsImageData)
    : sink_(std::move(entrySink)),
      clock_(std::move(captureClock)),
      keepsImageData_(keepsImageData) {}

void Recorder::BeginCall(const std::string& name, const std::vector<Value>& arguments) {
  AddSettingsChanges(false);
  openCall_ = name;
  sink_(CallBegin{name, arguments, clock_()});
}

void Recorder::EndCall(const std::vector<Value>& results,
                       const std::optional<std::uint32_t>& imageChecksum) {
  AddSettingsChanges(true);
  sink_(CallEnd{std::exchange(openCall_, {}), results, imageChecksum, clock_()});
}

void Recorder::AddWrite(std::span<const std::uint8_t> given, std::int32_t result) {
  Transfer transfer{.direction = Direction::kToScanner,
                    .requested = static_cast<std::uint32_t>(given.size()),
                    .result = result,
                    .microseconds = clock_(),
                    .bytes = std::vector(given.begin(), given.end()),
                    .checksum = Crc32(given)};
  transfer.delivered = UsuallyDelivered(transfer);
  sink_(transfer);
}

void Recorder::AddRead(std::uint32_t requested, std::span<const std::uint8_t> delivered,
                       std::int32_t result) {
  Transfer transfer{.direction = Direction::kFromScanner,
                    .requested = requested,
                    .delivered = static_cast<std::uint32_t>(delivered.size()),
                    .result = result,
                    .microseconds = clock_(),
                    .bytes = std::nullopt,
                    .checksum = Crc32(delivered)};
  const ExportRow* const call = ExportOf(openCall_);
  transfer.isImage = call != nullptr && call->fetchesImage && delivered.size() > kLongestReply;
  if (transfer.isImage) transfer.lastByte = delivered.back();
  if (!transfer.isImage || keepsImageData_) {
    transfer.bytes.emplace(delivered.begin(), delivered.end());
  }
  sink_(transfer);
}

void Recorder::AddSettingsChanges(bool byModule) {
  if (watched_ == nullptr) return;
  for (const SettingsChange& change : Compare(known_, *watched_, byModule)) {
    Apply(change, known_);
    sink_(change);
  }
}

}  // namespace capture
