#pragma once

#include <cstdint>

#include "fuzz/conversation.h"
#include "fuzz/host_calls.h"

// What the seeds are made of.
namespace pmddb832::fuzz {

inline constexpr std::uint8_t kSeedRows = 7;  // lines of a buffer

struct SeedScan {
  std::uint8_t pixelType;
  std::uint8_t outputFormat;
  std::uint8_t flags;  // mirror, preview, mono, gamma, colour, halftone, optionS, keepPaper
  std::uint8_t source;
};

void AddCall(Conversation& conversation, HostAction what, std::uint8_t argument = 0,
             std::uint32_t value = 0);
void AddFault(Conversation& conversation, Moment moment, std::uint8_t skipped, FaultKind kind,
              std::uint8_t place = 0, std::uint16_t value = 0);

// A scanner with a bed of 13.3 x 20 inches at 600 dpi and without option units, and a host that
// wants 41 x 20 pixels from (8, 5) at 300 dpi, and calls nothing yet.
Conversation WithoutCalls(const SeedScan& scan);

// The host scans all of that in bands.
Conversation WholeScan(const SeedScan& scan);

// Nine lines of 4000 pixels in colour, of which no receive buffer holds more than five; no calls.
Conversation WideScan();

}  // namespace pmddb832::fuzz
