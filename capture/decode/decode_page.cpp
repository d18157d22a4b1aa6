#include "capture/decode/decode_page.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "capture/file/number_text.h"

namespace capture {
namespace {

constexpr std::size_t kWidth = 110;
constexpr std::size_t kTimeColumn = 9;
constexpr std::size_t kPartsColumn = 26;
constexpr std::size_t kValueColumn = 30;
constexpr std::size_t kFewestToFold = 2;  // repetitions

std::string Padded(std::string text, std::size_t width) {
  text.resize(std::max(text.size() + 1, width), ' ');
  return text;
}

std::string Joined(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) text.append(text.empty() ? "" : ", ").append(part);
  return text;
}

std::string TimeText(std::uint64_t microseconds) {
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%.3f s", static_cast<double>(microseconds) / 1'000'000);
  return text.data();
}

// The page: lines with a margin that shows where something went wrong.
class Page {
 public:
  void Add(std::size_t indent, const std::string& line, bool isTrouble = false) {
    text_.append(isTrouble ? "!! " : "   ").append(indent, ' ').append(line).append("\n");
  }
  // A long line goes on below, behind a comma.
  void AddWrapped(std::size_t indent, std::string line, bool isTrouble = false,
                  std::size_t hanging = 4) {
    constexpr std::size_t kMargin = 3;
    std::size_t inner = indent;
    while (line.size() + inner + kMargin > kWidth) {
      const std::size_t comma = line.rfind(", ", kWidth - inner - kMargin - 1);
      if (comma == std::string::npos) break;
      Add(inner, line.substr(0, comma + 1), isTrouble);
      line.erase(0, comma + 2);
      inner = indent + hanging;
    }
    Add(inner, line, isTrouble);
  }
  void AddGap() { text_.append("\n"); }
  std::string Text() const { return text_; }

 private:
  std::string text_;
};

void AddExchange(Page& page, const Exchange& exchange) {
  std::string line = exchange.title;
  if (!exchange.parts.empty()) {
    line = exchange.block != 0 ? line + ", " : Padded(line, kPartsColumn);
    line += Joined(exchange.parts);
  }
  if (exchange.hasTrouble && exchange.line != 0) {
    line += "  [line " + std::to_string(exchange.line) + "]";
  }
  page.AddWrapped(2, line, exchange.hasTrouble, exchange.block != 0 ? 4 : kPartsColumn);
  for (const FieldRow& row : exchange.rows) {
    page.AddWrapped(6, Padded(row.name, kValueColumn) + row.value, row.isTrouble, kValueColumn);
  }
}

// How many of the exchanges behind the first tell the same.
std::size_t CountAlike(const std::vector<Exchange>& exchanges, std::size_t first) {
  std::size_t next = first + 1;
  while (next < exchanges.size() && exchanges[next].IsLike(exchanges[first])) ++next;
  return next - first - 1;
}

std::string MoreText(std::size_t count, const std::string& what) {
  return "... " + std::to_string(count) + " more like it" + what;
}

std::string BlocksText(std::uint32_t first, std::uint32_t last) {
  if (first == 0) return {};
  return " (blocks " + std::to_string(first) + " to " + std::to_string(last) + ")";
}

void AddExchanges(Page& page, const std::vector<Exchange>& exchanges) {
  for (std::size_t i = 0; i < exchanges.size(); ++i) {
    AddExchange(page, exchanges[i]);
    const std::size_t alike = CountAlike(exchanges, i);
    if (alike < kFewestToFold) continue;
    page.Add(2, MoreText(alike, BlocksText(exchanges[i + 1].block, exchanges[i + alike].block)),
             exchanges[i].hasTrouble);
    i += alike;
  }
}

void AddHeading(Page& page, const CallStory& call) {
  const bool isWhole = call.IsToldInHeading();
  const std::string heading = call.heading.empty() ? "outside the host's calls" : call.heading;
  const std::string outcome = isWhole && !call.results.empty() ? " -> " + call.results : "";
  page.AddWrapped(0, Padded(TimeText(call.microseconds), kTimeColumn) + heading + outcome,
                  isWhole && call.failed, kTimeColumn);
}

void AddCall(Page& page, const CallStory& call) {
  AddHeading(page, call);
  if (!call.settingsByHost.empty()) {
    page.AddWrapped(2, "settings by the host: " + call.settingsByHost);
  }
  AddExchanges(page, call.exchanges);
  if (!call.settingsByModule.empty()) {
    page.AddWrapped(2, "settings by the module: " + call.settingsByModule);
  }
  if (call.IsCutOff()) {
    page.Add(2, "the capture ends here, before the call returned", true);
    return;
  }
  if (!call.results.empty() && !call.IsToldInHeading()) {
    page.AddWrapped(2, "returned " + call.results, call.failed);
  }
}

// First and last of the blocks that the calls received; 0 for none.
std::string BlocksText(const std::vector<CallStory>& calls, std::size_t from, std::size_t to) {
  std::uint32_t first = 0;
  std::uint32_t last = 0;
  for (std::size_t i = from; i <= to; ++i) {
    for (const Exchange& exchange : calls[i].exchanges) {
      if (exchange.block == 0) continue;
      if (first == 0) first = exchange.block;
      last = exchange.block;
    }
  }
  return BlocksText(first, last);
}

bool HasTrouble(const CallStory& call) {
  return call.failed || call.IsCutOff() ||
         std::any_of(call.exchanges.begin(), call.exchanges.end(),
                     [](const Exchange& exchange) { return exchange.hasTrouble; });
}

// What makes a call what it is: one exchange for each run of those that are alike. Whether a good
// block comes in one band or in the next is chance.
std::vector<const Exchange*> Different(const std::vector<Exchange>& exchanges) {
  std::vector<const Exchange*> kinds;
  for (const Exchange& exchange : exchanges) {
    if (exchange.block != 0 && !exchange.hasTrouble) continue;
    if (kinds.empty() || !exchange.IsLike(*kinds.back())) kinds.push_back(&exchange);
  }
  return kinds;
}

std::size_t CountRepetitions(const std::vector<CallStory>& calls, std::size_t first,
                             std::size_t length) {
  std::size_t next = first + length;
  while (next < calls.size() && calls[next].IsLike(calls[next - length])) ++next;
  return (next - first - length) / length;
}

}  // namespace

Cycle FindCycle(const std::vector<CallStory>& calls, std::size_t first) {
  constexpr std::size_t kLongestCycle = 4;
  for (std::size_t length = 1; length <= kLongestCycle; ++length) {
    const std::size_t repetitions = CountRepetitions(calls, first, length);
    if (repetitions >= kFewestToFold) return {length, repetitions};
  }
  return {};
}

std::string Summarize(const std::vector<CallStory>& calls) {
  const auto troubled = std::count_if(calls.begin(), calls.end(), HasTrouble);
  const auto named = std::count_if(calls.begin(), calls.end(),
                                   [](const CallStory& call) { return !call.heading.empty(); });
  const std::string text =
      named == 0 ? "no call of the host"
                 : Counted(static_cast<std::uint64_t>(named), "call") + " of the host";
  if (troubled == 0) return text + ", nothing went wrong";
  return text + "; trouble in " + std::to_string(troubled) + ", marked with !!";
}

bool CallStory::IsToldInHeading() const {
  return !isOpen && settingsByHost.empty() && exchanges.empty() && settingsByModule.empty();
}

bool CallStory::IsLike(const CallStory& other) const {
  const std::vector<const Exchange*> mine = Different(exchanges);
  const std::vector<const Exchange*> others = Different(other.exchanges);
  return heading == other.heading && settingsByHost == other.settingsByHost &&
         settingsByModule == other.settingsByModule && results == other.results &&
         isOpen == other.isOpen &&
         std::equal(mine.begin(), mine.end(), others.begin(), others.end(),
                    [](const Exchange* a, const Exchange* b) { return a->IsLike(*b); });
}

std::string LayOut(const std::vector<CallStory>& calls) {
  Page page;
  page.Add(0, Summarize(calls));
  for (std::size_t i = 0; i < calls.size();) {
    const Cycle cycle = FindCycle(calls, i);
    const std::size_t shown = i + cycle.calls;
    for (; i < shown; ++i) {
      page.AddGap();
      AddCall(page, calls[i]);
    }
    if (cycle.repetitions < kFewestToFold) continue;
    const std::size_t last = shown + cycle.calls * cycle.repetitions - 1;
    const std::string alike =
        cycle.calls == 1 ? "" : " (" + Counted(cycle.calls, "call") + " each)";
    page.Add(0,
             MoreText(cycle.repetitions, alike + BlocksText(calls, shown, last) + ", until " +
                                             TimeText(calls[last].microseconds)),
             std::any_of(&calls[shown] - cycle.calls, &calls[shown], HasTrouble));
    i = last + 1;
  }
  return page.Text();
}

}  // namespace capture
