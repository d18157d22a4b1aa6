#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace simulator {

// Where in a conversation a fault strikes: at one of the first three, or at a transfer of a
// command. A transfer is one raw read or raw write; all numbers count from 0.
struct FaultPlace {
  std::optional<std::uint32_t> transfer;  // reads and writes together
  std::optional<std::uint32_t> readFrom;  // the first read from that transfer on
  std::optional<std::uint32_t> byte;      // the transfer that carries it; see FaultInjector

  // The command as "FS W", "ESC @", "FF", "EM" or "CAN", and which time it is sent, counted from 1;
  // nothing: every time.
  std::string command;
  std::optional<std::uint32_t> occurrence = 1;

  // The driver's writes from the command's letters (0) to the next command, and its reads since the
  // last of them. Without a read it is the write itself.
  std::uint32_t write = 0;
  std::optional<std::uint32_t> read = 0;
};

enum class FaultKind {
  kFail,    // the transfer fails; its bytes are lost
  kCut,     // only the first `count` bytes pass, with success; the rest is lost
  kHalve,   // only the first half of the bytes passes, rounded down, with success
  kAnswer,  // `bytes` pass instead: the whole answer to what the driver wrote last, or the write
  kHold,    // the next `count` status replies report warming up, which hinders nothing else
  kUnplug,  // this transfer and all behind it fail; the bytes before FaultPlace::byte still pass
};

struct Fault {
  FaultPlace at;
  FaultKind kind = FaultKind::kFail;
  std::uint32_t count = 0;
  std::vector<std::uint8_t> bytes;
  std::string origin;  // file and line, for a message; empty for a fault that is built in
};

}  // namespace simulator
