#include "capture/replay/replaying_device.h"

#include <algorithm>

#include "capture/replay/transfer_text.h"
#include "wire/protocol_bytes.h"

namespace capture {
namespace {

constexpr auto kTimeout = static_cast<std::int32_t>(0x80070079);

// How many transfers may be missing in front of one that comes too early.
constexpr int kFarthestAhead = 8;

bool IsRead(const Transfer* transfer) {
  return transfer != nullptr && transfer->direction == Direction::kFromScanner;
}

bool IsWrite(const Transfer* transfer) {
  return transfer != nullptr && transfer->direction == Direction::kToScanner;
}

Transfer ReadOf(std::size_t bytes) {
  const auto count = static_cast<std::uint32_t>(bytes);
  return {.direction = Direction::kFromScanner,
          .requested = count,
          .delivered = count,
          .bytes = std::nullopt};
}

Transfer WriteOf(std::span<const std::uint8_t> bytes) {
  const auto count = static_cast<std::uint32_t>(bytes.size());
  return {.requested = count, .delivered = count, .bytes = std::vector(bytes.begin(), bytes.end())};
}

}  // namespace

ReplayingDevice::ReplayingDevice(const Capture& played, DifferenceLog& differences)
    : capture_(played), log_(differences) {}

void ReplayingDevice::BeginCall(const std::string& name, std::size_t begin, std::size_t callEnd) {
  call_ = name;
  cursor_ = begin;
  end_ = callEnd;
  rest_.clear();
  outOfTurn_.reset();
}

void ReplayingDevice::EndCall() {
  const Transfer* const next = Next();
  if (next == nullptr || log_.IsOver()) return;
  log_.Add({LineOf(capture_, cursor_), call_, TransferText(*next),
            call_.empty() ? "the end" : "the return of " + call_,
            ExplainWrites(capture_, cursor_, next, {})});
}

const Transfer* ReplayingDevice::TransferAt(std::size_t entry) const {
  return std::get_if<Transfer>(&capture_.entries[entry]);
}

const Transfer* ReplayingDevice::Next() {
  while (cursor_ < end_ && TransferAt(cursor_) == nullptr) ++cursor_;
  return cursor_ < end_ ? TransferAt(cursor_) : nullptr;
}

std::size_t ReplayingDevice::Left() const {
  std::size_t left = 0;
  for (std::size_t i = cursor_; i < end_; ++i) left += TransferAt(i) != nullptr ? 1U : 0U;
  return left;
}

bool ReplayingDevice::IsBehindTheCapture() {
  return Next() == nullptr && rest_.empty() && end_ == capture_.entries.size() && !call_.empty();
}

void ReplayingDevice::Report(const Transfer* expected, const Transfer& came) {
  std::string wanted = expected == nullptr ? "nothing more" : TransferText(*expected);
  if (expected == nullptr && !call_.empty()) wanted = "the return of " + call_;
  const std::size_t line = std::min(cursor_, capture_.entries.size() - 1);
  log_.Add({LineOf(capture_, line), call_, wanted, TransferText(came),
            ExplainWrites(capture_, cursor_, expected, came.Kept())});
}

std::int32_t ReplayingDevice::RawReadData(void* buffer, std::uint32_t* byteCount, void*) {
  const std::uint32_t wanted = *byteCount;
  *byteCount = 0;
  if (log_.IsOver() || IsBehindTheCapture()) return kTimeout;
  ++transfers_;
  const std::span read(static_cast<std::uint8_t*>(buffer), wanted);
  const std::int32_t result = Read(read, *byteCount);
  conversation_.Read(read.first(*byteCount), result < 0);
  return result;
}

std::int32_t ReplayingDevice::RawWriteData(void* buffer, std::uint32_t byteCount, void*) {
  if (log_.IsOver() || IsBehindTheCapture()) return kTimeout;
  ++transfers_;
  return Write({static_cast<const std::uint8_t*>(buffer), byteCount});
}

std::int32_t ReplayingDevice::Read(std::span<std::uint8_t> buffer, std::uint32_t& delivered) {
  const Transfer* const next = Next();
  const bool isExpected = IsRead(next) && next->requested == buffer.size();
  if (isExpected && rest_.empty() && !outOfTurn_.has_value()) {
    const std::vector<std::uint8_t> bytes = Delivered(*next);
    std::copy(bytes.begin(), bytes.end(), buffer.begin());
    delivered = next->delivered;
    ++cursor_;
    return next->result;
  }
  return outOfTurn_.has_value() ? ReadOutOfTurn(buffer, delivered)
                                : ReadInAnotherWay(buffer, delivered);
}

std::int32_t ReplayingDevice::ReadInAnotherWay(std::span<std::uint8_t> buffer,
                                               std::uint32_t& delivered) {
  // The rest of a read that was cut short is no difference of its own.
  if (rest_.empty()) Report(Next(), ReadOf(buffer.size()));
  if (log_.IsOver()) return kTimeout;
  if (rest_.empty()) SkipToRead(buffer.size());
  return FillFrom(cursor_, end_, buffer, delivered);
}

// A write that no other is like is acknowledged.
std::int32_t ReplayingDevice::ReadOutOfTurn(std::span<std::uint8_t> buffer,
                                            std::uint32_t& delivered) {
  const bool hasAnswer = *outOfTurn_ < capture_.entries.size() || !rest_.empty();
  if (hasAnswer) return FillFrom(*outOfTurn_, capture_.entries.size(), buffer, delivered);
  if (buffer.size() != 1) return kTimeout;
  buffer[0] = pmddb832::kAck;
  delivered = 1;
  return 0;
}

// The nearest transfer of the call from the cursor on that is such a one.
template <class Condition>
std::optional<std::size_t> ReplayingDevice::FindAhead(const Condition& isIt) const {
  int distance = 0;
  for (std::size_t i = cursor_; i < end_ && distance <= kFarthestAhead; ++i) {
    const Transfer* const transfer = TransferAt(i);
    if (transfer == nullptr) continue;
    ++distance;
    if (isIt(*transfer)) return i;
  }
  return std::nullopt;
}

// Where a write comes next, goes to the next read of that length that is near.
void ReplayingDevice::SkipToRead(std::size_t length) {
  if (!IsWrite(Next())) return;
  const auto isIt = [&](const Transfer& one) { return IsRead(&one) && one.requested == length; };
  cursor_ = FindAhead(isIt).value_or(cursor_);
}

// Fills the buffer from the rest and the reads from `entry` on, and moves `entry` behind them. The
// result is that of the last one; when they are not enough, that the device did not answer.
std::int32_t ReplayingDevice::FillFrom(std::size_t& entry, std::size_t last,
                                       std::span<std::uint8_t> buffer, std::uint32_t& delivered) {
  std::int32_t result = 0;
  while (rest_.size() < buffer.size() && result >= 0 && entry < last) {
    const Transfer* const transfer = TransferAt(entry);
    const bool isOther = std::holds_alternative<CallBegin>(capture_.entries[entry]) ||
                         std::holds_alternative<CallEnd>(capture_.entries[entry]);
    if (isOther || IsWrite(transfer)) break;
    ++entry;
    if (transfer == nullptr) continue;
    const std::vector<std::uint8_t> bytes = Delivered(*transfer);
    rest_.insert(rest_.end(), bytes.begin(), bytes.end());
    result = transfer->result;
  }
  const std::size_t count = std::min(rest_.size(), buffer.size());
  std::copy_n(rest_.begin(), count, buffer.begin());
  rest_.erase(rest_.begin(), rest_.begin() + static_cast<std::ptrdiff_t>(count));
  delivered = static_cast<std::uint32_t>(count);
  return result >= 0 && count < buffer.size() ? kTimeout : result;
}

std::vector<std::uint8_t> ReplayingDevice::Delivered(const Transfer& read) {
  if (read.bytes.has_value()) return *read.bytes;
  hasInvented_ = true;
  std::vector<std::uint8_t> bytes(read.delivered);
  if (!bytes.empty()) bytes.back() = read.lastByte;
  return bytes;
}

std::int32_t ReplayingDevice::Write(Bytes bytes) {
  rest_.clear();
  outOfTurn_.reset();
  const Part part = conversation_.Write(bytes);
  const Transfer* const next = Next();
  if (next != nullptr && IsWriteOf(*next, bytes)) {
    ++cursor_;
    return next->result;
  }
  Report(next, WriteOf(bytes));
  return log_.IsOver() ? kTimeout : WriteInAnotherWay(bytes, part);
}

std::int32_t ReplayingDevice::WriteInAnotherWay(Bytes bytes, Part part) {
  const auto isIt = [&](const Transfer& one) { return IsWriteOf(one, bytes); };
  if (const std::optional<std::size_t> ahead = FindAhead(isIt)) {
    cursor_ = *ahead + 1;
    return TransferAt(*ahead)->result;
  }
  const bool isCommand = part == Part::kCommand || part == Part::kUnknown;
  const Transfer* const next = Next();
  if (IsWrite(next) && next->requested == bytes.size() && !isCommand) {
    ++cursor_;
    return next->result;
  }
  const std::optional<std::size_t> elsewhere = FindWriteAnywhere(bytes);
  outOfTurn_ = elsewhere.has_value() ? *elsewhere + 1 : capture_.entries.size();
  return 0;
}

bool ReplayingDevice::IsWriteOf(const Transfer& transfer, Bytes bytes) const {
  return IsWrite(&transfer) && transfer.bytes.has_value() &&
         std::equal(bytes.begin(), bytes.end(), transfer.bytes->begin(), transfer.bytes->end());
}

std::optional<std::size_t> ReplayingDevice::FindWriteAnywhere(Bytes bytes) const {
  for (std::size_t i = 0; i < capture_.entries.size(); ++i) {
    const Transfer* const transfer = TransferAt(i);
    if (transfer != nullptr && transfer->result >= 0 && IsWriteOf(*transfer, bytes)) return i;
  }
  return std::nullopt;
}

}  // namespace capture
