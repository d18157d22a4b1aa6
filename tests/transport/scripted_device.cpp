#include "tests/transport/scripted_device.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <utility>

namespace pmddb832::tests {
namespace {

constexpr std::int32_t kFailure = -1;
constexpr std::uint8_t kAck = 0x06;
constexpr std::size_t kShownBytes = 80;

}  // namespace

Bytes Text(std::string_view text) {
  return {text.begin(), text.end()};
}

Bytes Fill(std::size_t count, std::uint8_t value) {
  return Bytes(count, value);
}

Bytes FromHex(std::string_view hex) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  Bytes bytes;
  bool isHigh = true;
  for (const char c : hex) {
    if (c == ' ') continue;
    const std::size_t digit = kDigits.find(c);
    REQUIRE(digit != std::string_view::npos);
    if (isHigh) bytes.push_back(0);
    bytes.back() = static_cast<std::uint8_t>(bytes.back() * 16 + digit);
    isHigh = !isHigh;
  }
  return bytes;
}

Bytes operator+(Bytes left, const Bytes& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

std::string Hex(const Bytes& bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (std::size_t i = 0; i < std::min(bytes.size(), kShownBytes); ++i) {
    if (i > 0) text += ' ';
    text += kDigits[bytes[i] >> 4];
    text += kDigits[bytes[i] & 15];
  }
  if (bytes.size() > kShownBytes) text += " ... (" + std::to_string(bytes.size()) + " bytes)";
  return text;
}

ScriptedDevice& ScriptedDevice::Expect(Bytes bytes) {
  const std::size_t length = bytes.size();
  return Add(Kind::kWrite, length, std::move(bytes));
}

ScriptedDevice& ScriptedDevice::ExpectAny(std::size_t length) {
  return Add(Kind::kAnyWrite, length, {});
}

ScriptedDevice& ScriptedDevice::Reply(Bytes bytes) {
  const std::size_t length = bytes.size();
  return Add(Kind::kRead, length, std::move(bytes));
}

ScriptedDevice& ScriptedDevice::ShortReply(std::uint32_t requested, Bytes bytes) {
  return Add(Kind::kRead, requested, std::move(bytes));
}

ScriptedDevice& ScriptedDevice::FailNextRead(Bytes filled) {
  const std::size_t length = filled.size();
  return Add(Kind::kFailingRead, length, std::move(filled));
}

ScriptedDevice& ScriptedDevice::FailNextWrite() {
  return Add(Kind::kFailingWrite, 0, {});
}

ScriptedDevice& ScriptedDevice::Unplug() {
  return Add(Kind::kUnplugged, 0, {});
}

ScriptedDevice& ScriptedDevice::Converse(std::string_view conversation) {
  while (!conversation.empty()) {
    const bool writes = conversation.front() == '>';
    const std::size_t end = std::min(conversation.find_first_of("<>", 1), conversation.size());
    const std::string_view bytes = conversation.substr(1, end - 1);
    if (bytes.starts_with('!')) {
      writes ? FailNextWrite() : FailNextRead();
    } else {
      writes ? Expect(FromHex(bytes)) : Reply(FromHex(bytes));
    }
    conversation.remove_prefix(end);
  }
  return *this;
}

ScriptedDevice& ScriptedDevice::ExpectBlock(std::uint8_t prefix, char letter, Bytes block) {
  Expect({prefix, static_cast<std::uint8_t>(letter)}).Reply({kAck});
  return Expect(std::move(block)).Reply({kAck});
}

std::string ScriptedDevice::Verdict() const {
  if (!complaint_.empty()) return complaint_;
  if (next_ == steps_.size() || IsUnplugged()) return "as scripted";
  return "the driver stopped before: " + Describe(steps_[next_]);
}

std::int32_t ScriptedDevice::RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) {
  const std::string came = "a read of " + std::to_string(*byteCount) + " bytes";
  if (overlapped != nullptr) return Complain(came + " with an overlapped structure");
  if (next_ == steps_.size()) return Complain(came);
  if (IsUnplugged()) return kFailure;
  const Step& step = steps_[next_];
  const bool fails = step.kind == Kind::kFailingRead && step.length <= *byteCount;
  if (!fails && (step.kind != Kind::kRead || step.length != *byteCount)) return Complain(came);
  ++next_;
  const std::size_t delivered = step.bytes.size();
  std::copy(step.bytes.begin(), step.bytes.end(), static_cast<std::uint8_t*>(buffer));
  if (fails) return kFailure;
  if (step.length == duringReadOf && duringRead != nullptr) std::exchange(duringRead, nullptr)();
  *byteCount = static_cast<std::uint32_t>(delivered);
  return success;
}

std::int32_t ScriptedDevice::RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) {
  const auto* const first = static_cast<const std::uint8_t*>(buffer);
  const Bytes bytes(first, first + byteCount);
  const std::string came = "a write of " + Hex(bytes);
  if (overlapped != nullptr) return Complain(came + " with an overlapped structure");
  if (next_ == steps_.size()) return Complain(came);
  if (IsUnplugged()) return kFailure;
  const Step& step = steps_[next_];
  if (step.kind == Kind::kFailingWrite) {
    ++next_;
    return kFailure;
  }
  if (!Takes(step, bytes)) return Complain(came);
  ++next_;
  return success;
}

bool ScriptedDevice::IsUnplugged() const {
  return next_ < steps_.size() && steps_[next_].kind == Kind::kUnplugged;
}

bool ScriptedDevice::Takes(const Step& step, const Bytes& written) {
  if (step.kind == Kind::kAnyWrite) return step.length == written.size();
  return step.kind == Kind::kWrite && step.bytes == written;
}

ScriptedDevice& ScriptedDevice::Add(Kind kind, std::size_t length, Bytes bytes) {
  steps_.push_back({kind, static_cast<std::uint32_t>(length), std::move(bytes)});
  return *this;
}

std::int32_t ScriptedDevice::Complain(const std::string& what) {
  if (complaint_.empty()) {
    const std::string expected = next_ < steps_.size() ? Describe(steps_[next_]) : "nothing more";
    complaint_ =
        "transfer " + std::to_string(next_ + 1) + ": expected " + expected + ", came " + what;
  }
  return kFailure;
}

std::string ScriptedDevice::Describe(const Step& step) const {
  switch (step.kind) {
    case Kind::kWrite:
      return "a write of " + Hex(step.bytes);
    case Kind::kAnyWrite:
      return "a write of " + std::to_string(step.length) + " bytes";
    case Kind::kRead:
      return "a read of " + std::to_string(step.length) + " bytes";
    case Kind::kFailingWrite:
      return "a write that fails";
    case Kind::kFailingRead:
      return "a read that fails";
    case Kind::kUnplugged:
      return "no answer any more";
  }
  return {};
}

}  // namespace pmddb832::tests
