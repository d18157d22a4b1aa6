#pragma once

#include <cstdint>

namespace pmddb832 {

// What GetLastError, and through it PMGetScanError, answers.
enum ErrorCode : std::uint32_t {
  kNoError = 0,
  kIdentificationFailed = 1,
  kEmptyLine = 1,
  kUnreadable = 7,  // no device, or status or identity unreadable
  kNoTransport = 8,
  kTransferFailed = 9,
  kUnsupportedLevel = 10,
  kOptionEmpty = 13,
  kOptionOpen = 14,
  kOptionJammed = 15,
  kTooLarge = 16,  // area, line or buffer
  kScannerError = 22,
  kNotReady = 31,
  kOriginBeyondLimits = 34,
  kAreaBeyondLimits = 35,
  kWarmingUp = 43,
};

}  // namespace pmddb832
