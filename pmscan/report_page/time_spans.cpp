#include "pmscan/report_page/time_spans.h"

#include <algorithm>
#include <utility>
#include <variant>

#include "capture/conversation/captured_conversation.h"

namespace pmscan {
namespace {

using capture::Part;

constexpr std::uint64_t kShortest = 1000;  // microseconds

Activity ActivityOf(Part part, bool isInCall) {
  switch (part) {
    case Part::kCommand:
    case Part::kControl:
      return isInCall ? Activity::kCommand : Activity::kHost;
    case Part::kParameters:
      return Activity::kCommand;
    case Part::kAcknowledge:
    case Part::kReply:
      return Activity::kAnswer;
    case Part::kBlock:
    case Part::kBlockHeader:
    case Part::kBlockAnswer:
      return Activity::kPicture;
    default:
      return Activity::kUnasked;
  }
}

class SpanTaker {
 public:
  void Take(const capture::CallBegin& call) {
    Add(Activity::kHost, call.microseconds, nullptr);
    isInCall_ = true;
  }
  void Take(const capture::CallEnd& call) {
    Add(Activity::kModule, call.microseconds, nullptr);
    isInCall_ = false;
  }
  void Take(const capture::Transfer& transfer) {
    const Part part = Follow(conversation_, transfer);
    Add(ActivityOf(part, isInCall_), transfer.microseconds, &transfer);
    spans_.back().isBlock = part == Part::kBlock;
  }
  void Take(const capture::SettingsChange&) {}

  void Count() { ++entry_; }
  std::vector<TimeSpan> Release() { return std::move(spans_); }

 private:
  void Add(Activity activity, std::uint64_t end, const capture::Transfer* transfer) {
    if (spans_.empty()) now_ = end;
    const std::uint64_t begin = now_;
    now_ = std::max(now_, end);
    spans_.push_back({activity, begin, now_, entry_, transfer, false});
  }

  capture::Conversation conversation_;
  bool isInCall_ = false;
  std::uint64_t now_ = 0;
  std::size_t entry_ = 0;
  std::vector<TimeSpan> spans_;
};

}  // namespace

std::string_view NameOf(Activity activity) {
  constexpr std::array<std::string_view, kActivities> kNames{"host, between its calls",
                                                             "module, at the end of its calls",
                                                             "module, and sending commands",
                                                             "waiting for answers",
                                                             "picture data",
                                                             "transfers that nothing asked for"};
  return kNames[static_cast<std::size_t>(activity)];
}

std::vector<TimeSpan> TimeSpansOf(const capture::Capture& capture) {
  SpanTaker taker;
  for (const capture::Entry& entry : capture.entries) {
    std::visit([&](const auto& item) { taker.Take(item); }, entry);
    taker.Count();
  }
  return taker.Release();
}

std::array<ActivitySum, kActivities> SumsOf(const std::vector<TimeSpan>& spans) {
  std::array<ActivitySum, kActivities> sums{};
  for (const TimeSpan& span : spans) {
    ActivitySum& sum = sums[static_cast<std::size_t>(span.activity)];
    ++sum.spans;
    sum.microseconds += span.Length();
    if (span.transfer == nullptr) continue;
    const bool isSent = span.transfer->direction == capture::Direction::kToScanner;
    (isSent ? sum.sent : sum.received) += span.transfer->delivered;
  }
  return sums;
}

std::vector<std::size_t> LongestOf(const std::vector<TimeSpan>& spans, std::size_t most) {
  std::vector<std::size_t> places;
  for (std::size_t i = 0; i < spans.size(); ++i) {
    if (spans[i].Length() >= kShortest) places.push_back(i);
  }
  std::sort(places.begin(), places.end(), [&](std::size_t a, std::size_t b) {
    return std::pair(spans[b].Length(), a) < std::pair(spans[a].Length(), b);
  });
  places.resize(std::min(places.size(), most));
  return places;
}

}  // namespace pmscan
