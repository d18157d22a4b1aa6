#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "capture/trace/usb_packet.h"

namespace capture {

// The device of a trace that the user names; what is not named is found.
struct DeviceChoice {
  std::optional<std::uint32_t> bus;
  std::optional<std::uint32_t> device;
};

// Where the scanner is spoken to.
struct ScannerEndpoints {
  UsbAddress address;
  std::uint8_t out = 0;
  std::uint8_t in = 0;
  bool isGuess = false;  // neither commands nor the user tell that it is one
};

// The device that is sent commands that scanners know, and its two bulk endpoints: those of the
// commands and of what is read behind them. Where no device is sent any, as behind the beginning of
// a long scan, the only one that has bulk transfers. Throws TraceError where that is none or more
// than one, and names those that there are.
ScannerEndpoints FindScanner(std::span<const UsbPacket> packets, const DeviceChoice& choice);

}  // namespace capture
