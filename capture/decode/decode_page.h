#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "capture/decode/decode_exchange.h"

namespace capture {

// A call of the host with all that happened in it.
struct CallStory {
  std::string heading;  // "PMInitAcquire, outputFormat 5"; empty outside the calls
  std::uint64_t microseconds = 0;
  std::string settingsByHost;
  std::vector<Exchange> exchanges;
  std::string settingsByModule;
  std::string results;
  bool failed = false;
  bool isOpen = true;  // no end of it was recorded

  // It never returned.
  bool IsCutOff() const { return isOpen && !heading.empty(); }
  // Nothing happened in it but that it returned.
  bool IsToldInHeading() const;
  // The same but for time, blocks and numbers that only count.
  bool IsLike(const CallStory& other) const;
};

// Lays the calls out as lines: see Decode.
std::string LayOut(const std::vector<CallStory>& calls);

}  // namespace capture
