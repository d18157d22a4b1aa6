#include "pmscan/report_page/scan_outcome.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>
#include <variant>

#include "capture/decode/decode_calls.h"
#include "capture/file/number_text.h"
#include "pmscan/captures/call_values.h"
#include "wire/error_codes.h"

namespace pmscan {
namespace {

using capture::Counted;
using pmddb832::kOptionEmpty;

std::string SecondsText(std::uint64_t microseconds) {
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%.3f s", static_cast<double>(microseconds) / 1'000'000);
  return text.data();
}

std::uint64_t TimeOf(const capture::Entry& entry) {
  if (const auto* const call = std::get_if<capture::CallBegin>(&entry)) return call->microseconds;
  if (const auto* const call = std::get_if<capture::CallEnd>(&entry)) return call->microseconds;
  const auto* const transfer = std::get_if<capture::Transfer>(&entry);
  return transfer == nullptr ? 0 : transfer->microseconds;
}

bool HasTimes(const capture::Capture& capture) {
  return std::any_of(capture.entries.begin(), capture.entries.end(),
                     [](const capture::Entry& entry) { return TimeOf(entry) != 0; });
}

template <class Kind>
bool HasAny(const capture::Capture& capture) {
  return std::any_of(
      capture.entries.begin(), capture.entries.end(),
      [](const capture::Entry& entry) { return std::holds_alternative<Kind>(entry); });
}

// Calls that ask how the scanner is: their answers are no failures of theirs.
bool IsQuestion(std::string_view name) {
  return name == "PMGetScanError" || name == "PMGetOptionStatus" || name == "PMGetScanPaperSize";
}

// What the calls came to, as far as their returns tell.
struct Verdict {
  std::string failedCall;  // the last one behind which nothing better came; empty for none
  std::uint64_t failedAt = 0;
  std::string reason;      // "paper jam (15)"; empty where the host did not ask
  std::uint32_t code = 0;  // of the reason
  std::string openCall;    // that never returned
};

class Judge {
 public:
  void Take(const capture::CallBegin& call) { verdict_.openCall = call.name; }
  void Take(const capture::CallEnd& call) {
    verdict_.openCall.clear();
    const std::vector<capture::FieldRow> results = DescribeResults(call);
    if (call.name == "PMGetScanError") return TakeReason(call, results);
    if (IsQuestion(call.name) || results.empty()) return;
    const bool hasFailed =
        std::any_of(results.begin(), results.end(),
                    [](const capture::FieldRow& result) { return result.isTrouble; });
    if (hasFailed) {
      verdict_ = {call.name, call.microseconds, {}, 0, {}};
    } else if (call.name == verdict_.failedCall) {
      verdict_ = {};
    }
  }
  void Take(const capture::SettingsChange&) {}
  void Take(const capture::Transfer&) {}

  const Verdict& Result() const { return verdict_; }

 private:
  void TakeReason(const capture::CallEnd& call, const std::vector<capture::FieldRow>& results) {
    const bool isAsked = !verdict_.failedCall.empty() && verdict_.reason.empty();
    if (!isAsked || results.empty()) return;
    verdict_.reason = results.front().value;
    verdict_.code = ValueOf(call.results, "result");
  }

  Verdict verdict_;
};

Verdict VerdictOn(const capture::Capture& capture) {
  Judge judge;
  for (const capture::Entry& entry : capture.entries) {
    std::visit([&](const auto& item) { judge.Take(item); }, entry);
  }
  return judge.Result();
}

bool IsWhole(const CapturedPage& page) {
  return page.IsWhole();
}

// "3 pages came whole", "904 of 4200 lines of page 2 came".
std::string PagesText(const std::vector<CapturedPage>& pages) {
  const auto whole = static_cast<std::uint64_t>(std::count_if(pages.begin(), pages.end(), IsWhole));
  std::string text = pages.empty() ? "No picture was sent" : "";
  if (whole != 0) text = Counted(whole, "page") + " came whole";
  for (std::size_t i = 0; i < pages.size(); ++i) {
    if (IsWhole(pages[i])) continue;
    const std::string of =
        pages[i].shape.height == 0 ? "" : " of " + std::to_string(pages[i].shape.height);
    text += (text.empty() ? "" : ", ") + std::to_string(pages[i].Lines()) + of + " lines of page " +
            std::to_string(i + 1) + " came";
  }
  return text;
}

std::size_t CountTrouble(const std::vector<capture::CallStory>& calls) {
  std::size_t count = 0;
  for (const capture::CallStory& call : calls) {
    const auto troubled =
        std::count_if(call.exchanges.begin(), call.exchanges.end(),
                      [](const capture::Exchange& exchange) { return exchange.hasTrouble; });
    count += static_cast<std::size_t>(troubled) + (call.failed || call.IsCutOff() ? 1 : 0);
  }
  return count;
}

std::string FailureText(const Verdict& verdict, bool hasTimes) {
  const std::string time = hasTimes ? " at " + SecondsText(verdict.failedAt) : "";
  const std::string reason =
      verdict.reason.empty() ? "the host did not ask for the reason" : verdict.reason;
  return verdict.failedCall + " failed" + time + ": " + reason + ".";
}

}  // namespace

CapturedOutcome OutcomeOf(const capture::Capture& capture,
                          const std::vector<capture::CallStory>& calls,
                          const std::vector<CapturedPage>& pages) {
  const Verdict verdict = VerdictOn(capture);
  const bool areWhole = std::all_of(pages.begin(), pages.end(), IsWhole);
  if (!verdict.openCall.empty()) {
    return {"The capture ends within " + verdict.openCall + ", before the call returned. " +
                PagesText(pages) + ".",
            true};
  }
  if (!verdict.failedCall.empty()) {
    const bool isEndOfStack = verdict.code == kOptionEmpty && areWhole && !pages.empty();
    return {FailureText(verdict, HasTimes(capture)) + " " + PagesText(pages) + ".", !isEndOfStack};
  }
  const std::size_t troubles = CountTrouble(calls);
  const std::string wrong = troubles == 0 ? "nothing went wrong"
                                          : std::to_string(troubles) +
                                                (troubles == 1 ? " thing" : " things") +
                                                " went wrong on the way";
  return {PagesText(pages) + "; " + wrong + ".", !areWhole || (troubles != 0 && pages.empty())};
}

std::vector<std::string> NotesOn(const capture::Capture& capture,
                                 const std::vector<CapturedPage>& pages) {
  std::vector<std::string> notes;
  if (capture.entries.empty()) return {"The capture is empty."};
  if (!HasTimes(capture)) {
    notes.emplace_back(
        "The capture keeps no times: the timeline counts its entries instead, and no wait is "
        "told.");
  }
  if (!HasAny<capture::CallBegin>(capture)) {
    notes.emplace_back(
        "The capture keeps no calls of the host, only transfers: what the host did is not told.");
  }
  const bool lacksBytes = std::any_of(pages.begin(), pages.end(), [](const CapturedPage& page) {
    return std::any_of(page.blocks.begin(), page.blocks.end(),
                       [](const CapturedBlock& block) { return block.data.empty(); });
  });
  if (lacksBytes) {
    notes.emplace_back(
        "The capture keeps the length of picture data, not all its bytes: record with "
        "--capture-data to see the pages.");
  }
  return notes;
}

}  // namespace pmscan
