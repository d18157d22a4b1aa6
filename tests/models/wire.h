#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace pmddb832::models {

using Bytes = std::vector<std::uint8_t>;

inline std::uint8_t Low8(std::uint64_t value) {
  return static_cast<std::uint8_t>(value);
}
inline std::uint16_t Low16(std::uint64_t value) {
  return static_cast<std::uint16_t>(value);
}
inline std::uint16_t U16(std::span<const std::uint8_t> bytes, std::size_t at) {
  return static_cast<std::uint16_t>(bytes[at] | bytes[at + 1] << 8);
}
inline std::uint32_t U32(std::span<const std::uint8_t> bytes, std::size_t at) {
  return U16(bytes, at) | static_cast<std::uint32_t>(U16(bytes, at + 2)) << 16;
}
inline void PutU16(std::span<std::uint8_t> bytes, std::size_t at, std::uint32_t value) {
  bytes[at] = Low8(value);
  bytes[at + 1] = Low8(value >> 8);
}
inline void PutU32(std::span<std::uint8_t> bytes, std::size_t at, std::uint32_t value) {
  PutU16(bytes, at, value);
  PutU16(bytes, at + 2, value >> 16);
}

// Something that host or device can notice: a transfer, or a call out to the host or the system.
struct Event {
  enum class Kind { kWrite, kRead, kProgress, kRepaint, kSleep };

  Kind kind;
  std::uint32_t value;   // bytes asked for, percent, milliseconds
  Bytes bytes;           // sent, or delivered: maybe fewer than were asked for
  bool succeeds = true;  // what the device answers to the transfer
};

// The device's side of the wire.
class Device {
 public:
  virtual ~Device() = default;
  virtual bool Take(const Bytes& sent) = 0;
  virtual bool Give(std::uint32_t length, Bytes& delivered) = 0;
};

// What the model lets happen in one call, in order.
class Wire {
 public:
  explicit Wire(Device& device) : device_(device) {}

  bool Write(Bytes bytes) {
    if (!connected) return false;
    const auto length = static_cast<std::uint32_t>(bytes.size());
    const bool succeeds = device_.Take(bytes);
    events.push_back({Event::Kind::kWrite, length, std::move(bytes), succeeds});
    return succeeds;
  }
  // What the device does not deliver stays in `into` as it was.
  bool Read(std::span<std::uint8_t> into) {
    if (!connected) return false;
    const auto length = static_cast<std::uint32_t>(into.size());
    Bytes delivered;
    const bool succeeds = device_.Give(length, delivered);
    for (std::size_t i = 0; i < delivered.size(); ++i) into[i] = delivered[i];
    events.push_back({Event::Kind::kRead, length, std::move(delivered), succeeds});
    return succeeds;
  }
  void Progress(std::uint32_t percent) { events.push_back({Event::Kind::kProgress, percent, {}}); }
  void Repaint() { events.push_back({Event::Kind::kRepaint, 0, {}}); }
  void Sleep(std::uint32_t milliseconds) {
    events.push_back({Event::Kind::kSleep, milliseconds, {}});
  }

  bool connected = true;  // whether the record names a device
  std::vector<Event> events;

 private:
  Device& device_;
};

}  // namespace pmddb832::models
