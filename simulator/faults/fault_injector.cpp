#include "simulator/faults/fault_injector.h"

#include <algorithm>
#include <utility>

#include "simulator/device/device_results.h"
#include "simulator/device/status_bits.h"

// How faults change the transfers.

namespace simulator {
namespace {

// Of so many bytes.
std::uint32_t LeftBy(const Fault& fault, std::uint32_t count) {
  if (fault.kind == FaultKind::kFail) return 0;
  return fault.kind == FaultKind::kHalve ? count / 2 : std::min(count, fault.count);
}

// What is written before the cable is out reaches the scanner in order.
bool Disturbs(const Fault& fault, const ConversationPlace& place) {
  if (fault.kind == FaultKind::kUnplug) return place.read.has_value();
  return fault.kind != FaultKind::kHold;
}

}  // namespace

FaultInjector::FaultInjector(Scanner& soundScanner, std::vector<Fault> scriptedFaults)
    : scanner_(soundScanner) {
  for (const auto& [name, fault] : soundScanner.CableFaults()) faults_.push_back({fault});
  for (Fault& fault : scriptedFaults) faults_.push_back({std::move(fault)});
}

std::vector<std::string> FaultInjector::Unreached() const {
  std::vector<std::string> origins;
  for (const Scripted& scripted : faults_) {
    if (!scripted.struck && !scripted.fault.origin.empty())
      origins.push_back(scripted.fault.origin);
  }
  return origins;
}

bool FaultInjector::IsAt(const Scripted& scripted, const ConversationPlace& place,
                         std::uint32_t count) const {
  const FaultPlace& at = scripted.fault.at;
  if (at.transfer) return *at.transfer == place.transfer;
  if (at.readFrom) return !scripted.struck && place.read && *at.readFrom <= place.transfer;
  if (at.byte) return !scripted.struck && *at.byte < passed_ + count;
  return at.command == place.command && (!at.occurrence || *at.occurrence == place.occurrence) &&
         at.write == place.write && at.read == place.read;
}

const Fault* FaultInjector::Strike(const ConversationPlace& place, std::uint32_t count) {
  for (Scripted& scripted : faults_) {
    if (!IsAt(scripted, place, count)) continue;
    const Fault& fault = scripted.fault;
    scripted.struck = true;
    if (fault.kind == FaultKind::kUnplug) cableEnd_ = fault.at.byte.value_or(passed_);
    if (fault.kind == FaultKind::kHold) busyPolls_ = fault.count;
    if (Disturbs(fault, place)) scanner_.Disturb();
    return &fault;
  }
  return nullptr;
}

std::uint32_t FaultInjector::Passing(std::uint32_t count) const {
  if (!cableEnd_) return count;
  const std::uint64_t left = *cableEnd_ - std::min(passed_, *cableEnd_);
  return static_cast<std::uint32_t>(std::min<std::uint64_t>(count, left));
}

std::int32_t FaultInjector::RawReadData(void* buffer, std::uint32_t* byteCount, void*) {
  auto* const bytes = static_cast<std::uint8_t*>(buffer);
  const std::uint32_t wanted = *byteCount;
  const Fault* const fault = Strike(tracker_.Read(), wanted);
  *byteCount = Passing(wanted);
  const bool isOut = *byteCount < wanted;
  const std::int32_t result = ReadWith(isOut ? nullptr : fault, bytes, *byteCount);
  const std::span delivered(bytes, *byteCount);
  ReportBusy(delivered);
  tracker_.Delivered(delivered);
  return isOut ? device_results::kUnplugged : result;
}

std::int32_t FaultInjector::ReadWith(const Fault* fault, std::uint8_t* bytes,
                                     std::uint32_t& count) {
  const auto is = [&](FaultKind kind) { return fault != nullptr && fault->kind == kind; };
  if (is(FaultKind::kAnswer)) answer_ = fault->bytes;
  if (is(FaultKind::kFail)) return ReadLosing(*fault, bytes, count);
  if (answer_) return ReadAnswer(bytes, count);
  if (is(FaultKind::kCut) || is(FaultKind::kHalve)) return ReadLosing(*fault, bytes, count);
  return FromScanner(bytes, count);
}

// Of what the scanner says the driver gets the first bytes only, also in its buffer.
std::int32_t FaultInjector::ReadLosing(const Fault& fault, std::uint8_t* bytes,
                                       std::uint32_t& count) {
  std::vector<std::uint8_t> said(count);
  const std::int32_t soundResult = FromScanner(said.data(), count);
  count = LeftBy(fault, count);
  std::copy_n(said.begin(), count, bytes);
  if (soundResult < 0) return soundResult;
  return fault.kind == FaultKind::kFail ? device_results::kTimeout : 0;
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
  const std::span bytes(static_cast<std::uint8_t*>(buffer), byteCount);
  const Fault* const fault = Strike(tracker_.Write(bytes), byteCount);
  const std::uint32_t passing = Passing(byteCount);
  if (passing < byteCount) {
    ToScanner(bytes.first(passing));
    return device_results::kUnplugged;
  }
  EndAnswer();
  return fault == nullptr ? ToScanner(bytes) : WriteWith(*fault, bytes);
}

std::int32_t FaultInjector::WriteWith(const Fault& fault, std::span<std::uint8_t> bytes) {
  if (fault.kind == FaultKind::kFail) return device_results::kTimeout;
  if (fault.kind == FaultKind::kHold) return ToScanner(bytes);
  if (fault.kind != FaultKind::kAnswer) {
    return ToScanner(bytes.first(LeftBy(fault, static_cast<std::uint32_t>(bytes.size()))));
  }
  std::vector<std::uint8_t> others = fault.bytes;
  return ToScanner(others);
}

std::int32_t FaultInjector::FromScanner(std::uint8_t* bytes, std::uint32_t& count) {
  const std::int32_t result = scanner_.RawReadData(bytes, &count, nullptr);
  passed_ += count;
  return result;
}

std::int32_t FaultInjector::ToScanner(std::span<std::uint8_t> bytes) {
  passed_ += bytes.size();
  return scanner_.RawWriteData(bytes.data(), static_cast<std::uint32_t>(bytes.size()), nullptr);
}

}  // namespace simulator
