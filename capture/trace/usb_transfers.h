#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "capture/file/capture.h"
#include "capture/trace/scanner_endpoints.h"
#include "capture/trace/usb_packet.h"

namespace capture {

// One bulk transfer, as the bus saw it.
struct UsbTransfer {
  Direction direction = Direction::kToScanner;
  bool isWhole = false;  // a transfer of a converted capture: neither joined nor split
  std::optional<std::uint32_t> requested;  // where the trace tells it
  std::uint32_t length = 0;                // bytes that a read moved, or a write was given
  std::int32_t result = 0;
  std::uint64_t microseconds = 0;      // of its end
  std::span<const std::uint8_t> data;  // what was kept, at most `length` bytes
  std::string_view comment;

  bool IsKept() const { return data.size() == length; }
};

struct UsbTransfers {
  std::vector<UsbTransfer> transfers;    // in the order in which they ended
  std::uint64_t readsWithoutEnd = 0;     // left out
  std::uint64_t writesWithoutEnd = 0;    // taken for good ones
  std::uint64_t writesWithoutBegin = 0;  // left out: their bytes are not known
};

// Puts begins and ends at the two endpoints together.
UsbTransfers PairPackets(std::span<const UsbPacket> packets, const ScannerEndpoints& at);

}  // namespace capture
