#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

namespace pmscan {

struct WatchManners {
  std::function<bool()> isInterrupted;
  std::function<void()> tick;  // called between two looks
  // Called once, by the first look that finds interrupted work going on.
  std::function<void()> whenInterrupted = [] {};
  std::chrono::milliseconds betweenLooks{50};
  std::uint32_t patience = 14;  // looks that interrupted work has to end
};

// Runs the work in a thread of its own and waits for it here. True when it ended; what it threw is
// thrown. False when it was interrupted and did not end in time: it goes on, with all that it uses,
// and the program shall end.
bool RunWatched(std::function<void()> work, const WatchManners& manners);

}  // namespace pmscan
