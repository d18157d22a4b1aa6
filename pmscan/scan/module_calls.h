#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "capture/file/capture.h"
#include "interface/scanner_settings.h"
#include "pmscan/scan/module_exports.h"

namespace pmscan {

// What a host keeps for its calls.
struct CallSurroundings {
  const ModuleExports& module;
  pmddb832::ScannerSettings& settings;
  std::vector<std::uint8_t> rows;  // the buffer of the last PMAcquireImage
};

// What a call brought.
struct CallOutcome {
  std::vector<capture::Value> results;
  std::optional<std::uint32_t> imageChecksum;
};

// A call of an export with the arguments of a capture; those that are missing are 0.
struct ModuleCall {
  std::string_view name;
  std::vector<std::string_view> arguments;
  CallOutcome (*run)(CallSurroundings& surroundings, const std::vector<capture::Value>& arguments);
};

// The longest buffer that a call gets.
inline constexpr std::uint32_t kMostBufferBytes = 256 * 1024 * 1024;

// Null when there is no such export.
const ModuleCall* FindModuleCall(std::string_view name);

}  // namespace pmscan
