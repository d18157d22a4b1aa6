#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "capture/calls/export_table.h"
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

// The longest buffer that a call gets.
inline constexpr std::uint32_t kMostBufferBytes = 256 * 1024 * 1024;

// Calls an export with the arguments of a capture, of which those that are missing are 0, and
// `bufferBytes` is at most kMostBufferBytes.
CallOutcome CallModule(const capture::ExportRow& row, CallSurroundings& host,
                       const std::vector<capture::Value>& arguments);

}  // namespace pmscan
