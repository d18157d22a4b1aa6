#include "tests/models/comparison/replay.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "platform/native.h"

namespace pmddb832::models {
namespace {

constexpr std::size_t kEventsTold = 12;
constexpr std::size_t kBytesTold = 24;

std::string Hex(std::span<const std::uint8_t> bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes.first(std::min(bytes.size(), kBytesTold))) {
    char digits[4];
    std::snprintf(digits, sizeof digits, " %02X", byte);
    text += digits;
  }
  return bytes.size() > kBytesTold ? text + " ..." : text;
}

}  // namespace

std::string Describe(const Event& event) {
  const std::string value = std::to_string(event.value);
  const std::string failing = event.succeeds ? "" : ", which fails";
  switch (event.kind) {
    case Event::Kind::kWrite:
      return "write of " + value + ":" + Hex(event.bytes) + failing;
    case Event::Kind::kRead:
      return "read of " + value + ":" + Hex(event.bytes) + failing;
    case Event::Kind::kProgress:
      return "progress " + value;
    case Event::Kind::kRepaint:
      return "repaint";
    default:
      return "sleep of " + value + " ms";
  }
}

std::string FirstDifference(std::span<const std::uint8_t> expected,
                            std::span<const std::uint8_t> actual) {
  if (expected.size() != actual.size()) {
    return "expected " + std::to_string(expected.size()) + " bytes, there are " +
           std::to_string(actual.size());
  }
  const auto at = static_cast<std::size_t>(
      std::mismatch(expected.begin(), expected.end(), actual.begin()).first - expected.begin());
  if (at == expected.size()) return "";
  return "byte " + std::to_string(at) + ": expected" + Hex(expected.subspan(at, 1)) + ", got" +
         Hex(actual.subspan(at, 1));
}

void Replay::Begin(const std::vector<Event>& events) {
  events_ = &events;
  next_ = 0;
  slept_ = platform::Native().sleptMilliseconds;
}

std::string Replay::Verdict() {
  ExpectSleep();
  if (complaint_.empty() && next_ < events_->size()) Complain("the end of the call");
  return complaint_;
}

std::string Replay::LastEvents() const {
  std::string text;
  for (std::size_t i = next_ - std::min(next_, kEventsTold); i < next_; ++i) {
    text += "    " + std::to_string(i) + ": " + Describe((*events_)[i]) + "\n";
  }
  return text;
}

void Replay::Complain(const std::string& actual) {
  if (!complaint_.empty()) return;
  complaint_ = "event " + std::to_string(next_) + ": expected " +
               (next_ < events_->size() ? Describe((*events_)[next_]) : "the end of the call") +
               ", got " + actual;
}

// A sleep is noticed by what happens next.
void Replay::ExpectSleep() {
  const std::uint64_t slept = platform::Native().sleptMilliseconds - slept_;
  const bool isDue = next_ < events_->size() && (*events_)[next_].kind == Event::Kind::kSleep;
  if (slept != (isDue ? (*events_)[next_].value : 0)) {
    Complain("a sleep of " + std::to_string(slept) + " ms");
  }
  slept_ += slept;
  if (isDue && complaint_.empty()) ++next_;
}

const Event* Replay::Expect(Event::Kind kind, std::uint32_t value, const Bytes& sent) {
  ExpectSleep();
  if (!complaint_.empty()) return nullptr;
  const bool isDue =
      next_ < events_->size() && (*events_)[next_].kind == kind && (*events_)[next_].value == value;
  if (!isDue) {
    Complain(Describe({kind, value, sent}));
    return nullptr;
  }
  const Event& event = (*events_)[next_];
  const std::string difference =
      kind == Event::Kind::kWrite ? FirstDifference(event.bytes, sent) : "";
  if (!difference.empty()) {
    Complain(Describe({kind, value, sent}) + " (" + difference + ")");
    return nullptr;
  }
  ++next_;
  return &event;
}

std::int32_t Replay::RawReadData(void* buffer, std::uint32_t* byteCount, void* /*overlapped*/) {
  const Event* const event = Expect(Event::Kind::kRead, *byteCount, {});
  if (event == nullptr) return -1;
  if (!event->bytes.empty()) std::memcpy(buffer, event->bytes.data(), event->bytes.size());
  *byteCount = static_cast<std::uint32_t>(event->bytes.size());
  return event->succeeds ? static_cast<std::int32_t>(next_ % 2) : -1;
}

std::int32_t Replay::RawWriteData(void* buffer, std::uint32_t byteCount, void* /*overlapped*/) {
  const auto* const bytes = static_cast<const std::uint8_t*>(buffer);
  const Event* const event =
      Expect(Event::Kind::kWrite, byteCount, Bytes(bytes, bytes + byteCount));
  if (event == nullptr) return -1;
  return event->succeeds ? static_cast<std::int32_t>(next_ % 2) : -1;
}

}  // namespace pmddb832::models
