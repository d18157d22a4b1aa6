#pragma once

#include <cstddef>
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

// Calls that the host repeats in the same order: one band after the other, or a question again and
// again with another one behind it.
struct Cycle {
  std::size_t calls = 1;
  std::size_t repetitions = 0;  // behind the first time; 0, or at least 2
};

// The shortest cycle that begins with the call.
Cycle FindCycle(const std::vector<CallStory>& calls, std::size_t first);

// "12 calls of the host, nothing went wrong".
std::string Summarize(const std::vector<CallStory>& calls);

// Lays the calls out as lines: see Decode.
std::string LayOut(const std::vector<CallStory>& calls);

}  // namespace capture
