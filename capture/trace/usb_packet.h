#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "capture/trace/trace_packets.h"

namespace capture {

// A device by its address on the bus.
struct UsbAddress {
  std::uint32_t bus = 0;
  std::uint32_t device = 0;

  // NOLINTNEXTLINE(modernize-use-nullptr) It sees the zero that the compiler compares with.
  auto operator<=>(const UsbAddress&) const = default;
};

// What a packet tells of a USB transfer: its begin, its end, or with isWhole both.
struct UsbPacket {
  UsbAddress address;
  std::uint64_t request = 0;  // the begin and the end of a transfer have the same
  std::uint8_t endpoint = 0;
  bool isBulk = false;
  bool isEnd = false;
  bool isWhole = false;
  std::int32_t result = 0;    // at the end; negative is a failure
  std::uint32_t length = 0;   // asked for at the begin, moved at the end
  bool tellsRequest = false;  // the begin of a read tells how much was asked for
  std::uint64_t microseconds = 0;
  std::span<const std::uint8_t> data;  // what was kept of it
  std::string_view comment;

  bool IsIn() const { return (endpoint & 0x80) != 0; }
};

// Nothing for a packet that is not of USB, or that ends within its header. The packet outlives it.
std::optional<UsbPacket> ReadUsbPacket(const TracePacket& packet);

bool IsUsb(std::uint16_t linkType);

}  // namespace capture
