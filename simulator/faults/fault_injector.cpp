#include "simulator/faults/fault_injector.h"

#include <algorithm>
#include <utility>

#include "simulator/device/device_results.h"
#include "simulator/device/status_bits.h"

// How faults change the transfers.

namespace simulator {
namespace {

bool Matches(const FaultPlace& at, const ConversationPlace& place) {
  if (at.transfer) return *at.transfer == place.transfer;
  return at.command == place.command && (!at.occurrence || *at.occurrence == place.occurrence) &&
         at.write == place.write && at.read == place.read;
}

}  // namespace

FaultInjector::FaultInjector(Scanner& soundScanner, std::vector<Fault> scriptedFaults)
    : scanner_(soundScanner) {
  for (Fault& fault : scriptedFaults) faults_.push_back({std::move(fault)});
}

std::vector<std::string> FaultInjector::Unreached() const {
  std::vector<std::string> origins;
  for (const Scripted& scripted : faults_) {
    if (!scripted.struck) origins.push_back(scripted.fault.origin);
  }
  return origins;
}

const Fault* FaultInjector::Strike(const ConversationPlace& place) {
  for (Scripted& scripted : faults_) {
    const Fault& fault = scripted.fault;
    if (!Matches(fault.at, place)) continue;
    scripted.struck = true;
    if (fault.kind == FaultKind::kUnplug) unplugged_ = true;
    if (fault.kind == FaultKind::kHold) busyPolls_ = fault.count;
    if (fault.kind != FaultKind::kHold) scanner_.Disturb();
    return &fault;
  }
  return nullptr;
}

std::int32_t FaultInjector::RawReadData(void* buffer, std::uint32_t* byteCount, void*) {
  auto* const bytes = static_cast<std::uint8_t*>(buffer);
  const Fault* const fault = Strike(tracker_.Read());
  std::int32_t result = device_results::kUnplugged;
  if (unplugged_) {
    *byteCount = 0;
  } else {
    result = ReadWith(fault, bytes, *byteCount);
  }
  const std::span delivered(bytes, *byteCount);
  ReportBusy(delivered);
  tracker_.Delivered(delivered);
  return result;
}

std::int32_t FaultInjector::ReadWith(const Fault* fault, std::uint8_t* bytes,
                                     std::uint32_t& count) {
  const auto is = [&](FaultKind kind) { return fault != nullptr && fault->kind == kind; };
  if (is(FaultKind::kAnswer)) answer_ = fault->bytes;
  if (is(FaultKind::kFail)) return ReadLosing(bytes, count, 0, device_results::kTimeout);
  if (answer_) return ReadAnswer(bytes, count);
  if (is(FaultKind::kCut)) return ReadLosing(bytes, count, fault->count, 0);
  return scanner_.RawReadData(bytes, &count, nullptr);
}

// Of what the scanner says the driver gets the first bytes only, also in its buffer.
std::int32_t FaultInjector::ReadLosing(std::uint8_t* bytes, std::uint32_t& count,
                                       std::uint32_t most, std::int32_t result) {
  std::vector<std::uint8_t> said(count);
  const std::int32_t soundResult = scanner_.RawReadData(said.data(), &count, nullptr);
  count = std::min(count, most);
  std::copy_n(said.begin(), count, bytes);
  return soundResult < 0 ? soundResult : result;
}

std::int32_t FaultInjector::ReadAnswer(std::uint8_t* bytes, std::uint32_t& count) {
  const bool hasNothing = answer_->empty() && count != 0;
  count = static_cast<std::uint32_t>(std::min<std::size_t>(count, answer_->size()));
  const auto end = answer_->begin() + static_cast<std::ptrdiff_t>(count);
  std::copy(answer_->begin(), end, bytes);
  answer_->erase(answer_->begin(), end);
  return hasNothing ? device_results::kTimeout : 0;
}

void FaultInjector::ReportBusy(std::span<std::uint8_t> delivered) {
  const auto status = tracker_.MainStatusAmong(delivered.size());
  if (busyPolls_ == 0 || !status) return;
  delivered[*status] |= status_bits::kWarmingUp;
  --busyPolls_;
}

// The scanner's own answer goes the way of what the scripted one replaced.
void FaultInjector::EndAnswer() {
  if (!answer_) return;
  answer_.reset();
  scanner_.DropAnswer();
}

std::int32_t FaultInjector::RawWriteData(void* buffer, std::uint32_t byteCount, void*) {
  const std::span bytes(static_cast<const std::uint8_t*>(buffer), byteCount);
  const Fault* const fault = Strike(tracker_.Write(bytes));
  if (unplugged_) return device_results::kUnplugged;
  EndAnswer();
  if (fault == nullptr) return scanner_.RawWriteData(buffer, byteCount, nullptr);
  return WriteWith(*fault, {bytes.begin(), bytes.end()});
}

std::int32_t FaultInjector::WriteWith(const Fault& fault, std::vector<std::uint8_t> bytes) {
  if (fault.kind == FaultKind::kFail) return device_results::kTimeout;
  if (fault.kind == FaultKind::kCut) {
    bytes.resize(std::min<std::size_t>(bytes.size(), fault.count));
  }
  if (fault.kind == FaultKind::kAnswer) bytes = fault.bytes;
  return scanner_.RawWriteData(bytes.data(), static_cast<std::uint32_t>(bytes.size()), nullptr);
}

}  // namespace simulator
