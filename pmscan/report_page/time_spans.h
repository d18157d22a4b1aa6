#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "capture/file/capture.h"

namespace pmscan {

// What the time up to an entry of a capture went into, as far as the entry tells.
enum class Activity : std::uint8_t {
  kHost,     // up to a call's begin; outside of calls, up to a command
  kModule,   // behind the last transfer of a call, up to its end
  kCommand,  // up to the end of a write of a command or its parameters
  kAnswer,   // up to an acknowledge or a reply
  kPicture,  // up to the end of a block, its header, or the host's answer to it
  kUnasked,  // up to a transfer that nothing asked for
};
inline constexpr std::size_t kActivities = 6;

// For people: "waiting for answers".
std::string_view NameOf(Activity activity);

// The time between two entries of a capture that stand one behind the other. Changes of settings
// take none, and have no span.
struct TimeSpan {
  Activity activity = Activity::kHost;
  std::uint64_t begin = 0;  // microseconds; where times go back, that of the latest one before
  std::uint64_t end = 0;
  std::size_t entry = 0;                        // that ends it
  const capture::Transfer* transfer = nullptr;  // that ends it; null for a call's begin or end
  bool isBlock = false;                         // of the picture

  std::uint64_t Length() const { return end - begin; }
};

// Of the whole capture, in its order; the first one has no length. The capture outlives them.
std::vector<TimeSpan> TimeSpansOf(const capture::Capture& capture);

// All spans of one activity.
struct ActivitySum {
  std::uint64_t spans = 0;
  std::uint64_t microseconds = 0;
  std::uint64_t sent = 0;  // bytes; those of writes that failed are not among them
  std::uint64_t received = 0;
};
std::array<ActivitySum, kActivities> SumsOf(const std::vector<TimeSpan>& spans);

// The longest spans, longest first: their places in `spans`, of equal ones the earlier one first,
// and at most `most`. None is shorter than a thousandth of a second.
std::vector<std::size_t> LongestOf(const std::vector<TimeSpan>& spans, std::size_t most);

}  // namespace pmscan
