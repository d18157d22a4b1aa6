#pragma once

#include <cstdint>

#include "fuzz/conversation.h"

namespace pmddb832::fuzz {

class FuzzHost;

// What a host may do, in the order of the numbers in host_call::kWhat.
enum class HostAction : std::uint8_t {
  kScan,          // argument: output format; value: rows of each band
  kSetUp,         // argument: output format; odd value: calls out of the progress routine
  kAcquire,       // argument: rows; value: status of the band
  kAcquireBytes,  // value: bytes of the buffer; argument: status of the band
  kAbort,
  kSetFocus,          // argument: mode; value: position
  kGetOptionStatus,   // argument: option
  kGetScanPaperSize,  // argument: option
  kEnableOption,      // value
  kGetScanError,
  kReset,
  kFeed,
  kEject,
  kClose,
  kOpen,
  kSetScannerHardware,  // odd argument: no record
  kChooseScan,
  kWriteRecord,  // argument: field; value: what stands there, over and over
  kGoDirect,     // value: entry points that are there
  kUnload,
  kOpenNothing,  // without a record
};
inline constexpr std::size_t kHostActions = 21;

// Makes a call. The program stops where it ends with a code that is not listed.
void MakeCall(FuzzHost& host, const HostCall& call);

}  // namespace pmddb832::fuzz
