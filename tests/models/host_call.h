#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "tests/models/command_set.h"

namespace pmddb832::models {

enum class Export {
  kOpenScanner,
  kSetScannerHardware,
  kInitAcquire,
  kAcquireImage,
  kAbortScan,
  kCloseScanner,
  kGetOptionStatus,
  kEject,
  kFeed,
  kReset,
  kSetFocus,
  kEnableOption,
  kGetScanPaperSize,
};
inline constexpr std::array<std::string_view, 13> kExportNames{
    "PMOpenScanner",  "PMSetScannerHardware", "PMInitAcquire",     "PMAcquireImage", "PMAbortScan",
    "PMCloseScanner", "PMGetOptionStatus",    "PMEject",           "PMFeed",         "PMReset",
    "PMSetFocus",     "PMEnableOption",       "PMGetScanPaperSize"};

// A call of the host. What its arguments mean depends on the export.
struct HostCall {
  Export callee;
  std::uint32_t argument = 0;     // record, output format, option, focus mode, value
  std::uint8_t position = 0;      // of the focus
  bool tellsProgress = false;     // with a progress routine
  std::uint32_t bufferBytes = 0;  // of the image
  std::uint32_t bandStatus = 0;   // in the host's record beforehand
};

// All that a call leaves behind, besides the record and what happened on the wire.
struct Outcome {
  std::uint32_t result = 0;
  std::uint32_t error = 0;  // what PMGetScanError tells behind the call
  SetupRecord setup{};
  BandRecord band{};
  std::uint32_t paperWidth = 0, paperHeight = 0;
  Bytes image;
};

// What is there before the call, so that what it does not write is seen.
inline Outcome Unwritten(const HostCall& call) {
  Outcome outcome;
  outcome.setup.fill(0xA5A5A5A5);
  outcome.band.fill(0xA5A5A5A5);
  outcome.band[kBandStatus] = call.bandStatus;
  outcome.paperWidth = outcome.paperHeight = 0xA5A5A5A5;
  outcome.image.assign(call.bufferBytes, 0xA5);
  return outcome;
}

}  // namespace pmddb832::models
