#pragma once

#include <cstddef>
#include <cstdint>

namespace pmddb832 {

// The host's records of an acquisition, little-endian, at the stated offsets. The host owns them;
// the module writes the named members only.

enum AcquisitionStatus : std::uint32_t {
  kAcquisitionGoOn = 1,
  kAcquisitionFailed = 2,       // PMGetScanError tells why
  kAcquisitionFreshBuffer = 3,  // from the host, standard set: start with a new receive buffer
};

// Filled by PMInitAcquire.
struct AcquisitionSetup {
  std::uint32_t status;       // 0: AcquisitionStatus
  std::uint32_t reserved4;    // 4
  std::uint32_t lineBytes;    // 8: bytes of one host line
  std::uint32_t reserved12;   // 12
  std::uint32_t widthPixels;  // 16
  std::uint32_t heightLines;  // 20
};

// Filled by PMAcquireImage.
struct AcquisitionBand {
  std::uint32_t status;     // 0: AcquisitionStatus
  std::uint32_t reserved4;  // 4
  std::uint32_t done;       // 8: 1 when the last line of the image was delivered
  std::uint32_t lines;      // 12: lines of this band
  std::uint32_t bytes;      // 16: bytes of this band
};

static_assert(offsetof(AcquisitionSetup, lineBytes) == 8);
static_assert(offsetof(AcquisitionSetup, heightLines) == 20);
static_assert(offsetof(AcquisitionBand, done) == 8);
static_assert(offsetof(AcquisitionBand, bytes) == 16);

// The host's progress routine; takes a percentage. May be null.
using ProgressCallback = void (*)(std::uint32_t percent);

}  // namespace pmddb832
