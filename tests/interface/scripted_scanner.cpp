#include "tests/interface/scripted_scanner.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

namespace pmddb832::tests {
namespace {

constexpr std::uint8_t kFill = 0xA5;

// A record filled with A5, in memory of its exact size.
template <class Record>
std::unique_ptr<Record> Filled() {
  auto record = std::make_unique<Record>();
  std::memset(record.get(), kFill, sizeof *record);
  return record;
}

template <class Record>
Bytes BytesOfRecord(const Record& record) {
  Bytes bytes(sizeof record);
  std::memcpy(bytes.data(), &record, bytes.size());
  return bytes;
}

std::unique_ptr<ScannerSettings> FilledSettings(const ScannerSettings& model) {
  auto record = Filled<ScannerSettings>();
  record->deviceInterface = model.deviceInterface;
  record->useDeviceInterface = 1;
  std::memcpy(record->modelId, "QM8700\0\xA5", 8);
  return record;
}

Bytes LittleEndian(std::uint32_t value, std::size_t count) {
  Bytes bytes(count);
  for (std::uint8_t& byte : bytes) {
    byte = static_cast<std::uint8_t>(value);
    value >>= 8;
  }
  return bytes;
}

}  // namespace

Bytes Ramp(std::uint8_t first, std::size_t count) {
  Bytes bytes(count);
  for (std::uint8_t& byte : bytes) byte = first++;
  return bytes;
}

Bytes Short(std::uint32_t value) {
  return LittleEndian(value, 2);
}

Bytes Word(std::uint32_t value) {
  return LittleEndian(value, 4);
}

Bytes With(Bytes block, std::size_t offset, const Bytes& bytes) {
  REQUIRE(offset + bytes.size() <= block.size());
  std::copy(bytes.begin(), bytes.end(), block.begin() + static_cast<std::ptrdiff_t>(offset));
  return block;
}

Bytes With(Bytes block, std::string_view changes) {
  while (!changes.empty()) {
    const std::string change(changes.substr(0, changes.find(',')));
    const std::size_t colon = change.find(':');
    block = With(std::move(block), std::stoul(change),
                 FromHex(std::string_view(change).substr(colon + 1)));
    changes.remove_prefix(std::min(change.size() + 1, changes.size()));
  }
  return block;
}

std::string Band::Rows(std::size_t rowBytes) const {
  std::string text;
  for (std::size_t start = 0; start + rowBytes <= image.size(); start += rowBytes) {
    const auto row = image.begin() + static_cast<std::ptrdiff_t>(start);
    const auto same = std::count(row, row + static_cast<std::ptrdiff_t>(rowBytes), *row);
    if (!text.empty()) text += ' ';
    text += static_cast<std::size_t>(same) == rowBytes ? tests::Hex({*row}) : "mixed";
  }
  return text;
}

Bytes BytesOf(const ScannerSettings& settings) {
  return BytesOfRecord(settings);
}

Bytes FilledRecord(const ScannerSettings& model) {
  return BytesOfRecord(*FilledSettings(model));
}

Bytes FilledRecordAfterOpen(const ScannerSettings& model) {
  const auto record = FilledSettings(model);
  CHECK(PMOpenScanner(record.get()) == 1);
  PMExit();
  return BytesOfRecord(*record);
}

std::uint32_t OpenSet() {
  Call call{*currentSettings, currentChannel};
  return currentCommandSet->Open(call);
}

std::uint32_t AbortSet() {
  Call call{*currentSettings, currentChannel};
  return currentCommandSet->AbortScan(call);
}

std::uint32_t SetStatus(std::uint8_t* mainStatus, std::uint32_t option) {
  Call call{*currentSettings, currentChannel};
  return currentCommandSet->GetOptionStatus(call, mainStatus, option);
}

ScriptedScanner::ScriptedScanner() {
  progress.clear();
  duringProgress = nullptr;
  atPercent = 0;
  settings.pixelType = 2;
  settings.resolution = 100;
  settings.zoom = 100;
  settings.areaWidthPx = 16;
  settings.areaHeightPx = 4;
  settings.gamma = 220;
  settings.thresholdT = 0xFFFF;
}

void ScriptedScanner::AnswerReset() {
  device.Expect({0x1B, 0x40}).Reply({0x06});
}

void ScriptedScanner::ExpectEject() {
  device.Expect({0x0C}).Reply({0x06});
}

std::string ScriptedScanner::InitAcquire(std::uint32_t outputFormat, ProgressCallback callback) {
  const auto record = Filled<AcquisitionSetup>();
  PMInitAcquire(outputFormat, callback, record.get());
  setup = *record;
  return Hex(BytesOfRecord(setup));
}

Band ScriptedScanner::Acquire(std::size_t bufferBytes, std::uint32_t request) {
  Bytes image = Fill(bufferBytes, kFill);
  const auto record = Filled<AcquisitionBand>();
  record->status = request;
  PMAcquireImage(image.data(), static_cast<std::uint32_t>(bufferBytes), record.get());
  return {*record, Hex(BytesOfRecord(*record)), std::move(image)};
}

void ScriptedScanner::CheckAcquireFails(std::size_t bufferBytes, std::uint32_t code) {
  CHECK(Acquire(bufferBytes).record.status == kFailed);
  CHECK(PMGetScanError() == code);
}

void ScriptedScanner::CheckNothingAcquired() {
  const Band band = Acquire(64);
  CHECK(band.recordBytes == kUnwrittenBand);
  CHECK(band.image == Fill(64, kFill));
  CHECK(PMGetScanError() == 9);
}

void ScriptedScanner::NoteProgress(std::uint32_t percent) {
  progress.push_back(percent);
  if (percent < atPercent) return;
  if (const auto action = std::exchange(duringProgress, nullptr)) action();
}

}  // namespace pmddb832::tests
