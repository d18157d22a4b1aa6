#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/catalog/json_document.h"

namespace simulator {

// Where in a conversation a fault strikes: at a transfer by its number, or at one of a command.
struct FaultPlace {
  std::optional<std::uint32_t> transfer;  // raw reads and writes together, counted from 0

  // Without a number: the command as "FS W", "ESC @", "FF", "EM" or "CAN", and which time it is
  // sent, counted from 1; nothing: every time.
  std::string command;
  std::optional<std::uint32_t> occurrence = 1;

  // The driver's writes from the command's letters (0) to the next command, and its reads since the
  // last of them, both counted from 0. Without a read it is the write itself.
  std::uint32_t write = 0;
  std::optional<std::uint32_t> read = 0;
};

enum class FaultKind {
  kFail,    // the transfer fails; its bytes are lost
  kCut,     // only the first `count` bytes pass, with success; the rest is lost
  kAnswer,  // `bytes` pass instead: the whole answer to what the driver wrote last, or the write
  kHold,    // the next `count` status replies report warming up, which hinders nothing else
  kUnplug,  // this transfer and all behind it fail
};

struct Fault {
  FaultPlace at;
  FaultKind kind = FaultKind::kFail;
  std::uint32_t count = 0;
  std::vector<std::uint8_t> bytes;
  std::string origin;  // file and line, for a message
};

// The faults of a list in a profile or script. Throws ProfileError.
std::vector<Fault> ReadFaults(const JsonNode& list);

// Reads a fault script, an object with the list under "faults"; the file's name in UTF-8. Throws
// ProfileError.
std::vector<Fault> ReadFaultScript(const std::string& file);

// The keys of a script, of a fault, of its place, and of what it does.
std::vector<std::string_view> FaultScriptKeys();
std::vector<std::string_view> FaultKeys();
std::vector<std::string_view> FaultPlaceKeys();
std::vector<std::string_view> FaultActionKeys();

// What "part" may be.
std::vector<std::string_view> FaultParts();

}  // namespace simulator
