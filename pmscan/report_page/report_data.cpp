#include "pmscan/report_page/report_data.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <utility>

#include "capture/decode/decode.h"
#include "capture/decode/result_words.h"
#include "pmscan/report_page/captured_settings.h"
#include "pmscan/report_page/page_data.h"
#include "pmscan/report_page/scan_outcome.h"
#include "pmscan/report_page/string_table.h"
#include "pmscan/report_page/time_spans.h"

namespace pmscan {
namespace {

using Json = nlohmann::ordered_json;
using Calls = std::vector<capture::CallStory>;
using Spans = std::vector<TimeSpan>;

constexpr std::size_t kLongestTold = 10;

std::string Hex(std::span<const std::uint8_t> bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    if (!text.empty()) text += ' ';
    text += kDigits[byte >> 4u];
    text += kDigits[byte & 0x0Fu];
  }
  return text;
}

char KindOf(const capture::Capture& capture, const TimeSpan& span) {
  if (span.transfer != nullptr) {
    return span.transfer->direction == capture::Direction::kToScanner ? 'w' : 'r';
  }
  return std::holds_alternative<capture::CallBegin>(capture.entries[span.entry]) ? 'b' : 'e';
}

// Pictures are shown, or left out; the longest parameters are shorter than this.
bool IsToldInBytes(const TimeSpan& span) {
  constexpr std::size_t kMostBytes = 512;
  return span.transfer != nullptr && span.transfer->bytes.has_value() && !span.transfer->isImage &&
         !span.isBlock && span.transfer->bytes->size() <= kMostBytes;
}

Json SpansJson(const capture::Capture& capture, const Spans& spans, StringTable& strings) {
  std::string kinds;
  std::string activities;
  Json lengths = Json::array();
  Json bytes = Json::array();
  Json hex = Json::array();
  for (const TimeSpan& span : spans) {
    const capture::Transfer* const transfer = span.transfer;
    kinds += KindOf(capture, span);
    activities += static_cast<char>('0' + static_cast<char>(span.activity));
    lengths.push_back(span.Length());
    bytes.push_back(transfer == nullptr ? 0 : transfer->delivered);
    hex.push_back(IsToldInBytes(span)
                      ? static_cast<std::int64_t>(strings.PlaceOf(Hex(*transfer->bytes)))
                      : -1);
  }
  return {{"kinds", std::move(kinds)},
          {"activities", std::move(activities)},
          {"lengths", std::move(lengths)},
          {"bytes", std::move(bytes)},
          {"hex", std::move(hex)}};
}

Json FailuresJson(const Spans& spans) {
  Json failures = Json::array();
  for (std::size_t i = 0; i < spans.size(); ++i) {
    const capture::Transfer* const transfer = spans[i].transfer;
    if (transfer == nullptr) continue;
    if (transfer->result >= 0 && transfer->delivered == transfer->requested) continue;
    const bool failed = transfer->result < 0;
    failures.push_back(
        {i, transfer->requested, failed ? capture::ResultText(transfer->result) : std::string()});
  }
  return failures;
}

Json ActivitiesJson(const Spans& spans) {
  Json activities = Json::array();
  const auto sums = SumsOf(spans);
  for (std::size_t i = 0; i < sums.size(); ++i) {
    activities.push_back({NameOf(static_cast<Activity>(i)), sums[i].spans, sums[i].microseconds,
                          sums[i].sent, sums[i].received});
  }
  return activities;
}

std::size_t TransfersOf(const capture::CallStory& call) {
  std::size_t count = 0;
  for (const capture::Exchange& exchange : call.exchanges) count += exchange.transfers;
  return count;
}

// A call's own begin and end have spans too.
std::size_t SpansInFront(const capture::CallStory& call) {
  return call.heading.empty() ? 0 : 1;
}
std::size_t SpansOf(const capture::CallStory& call) {
  return SpansInFront(call) + TransfersOf(call) + (call.isOpen ? 0u : 1u);
}

Json CallJson(const capture::CallStory& call, StringTable& strings) {
  const unsigned flags =
      (call.failed ? 1u : 0u) | (call.IsCutOff() ? 2u : 0u) | (call.heading.empty() ? 4u : 0u);
  return {strings.PlaceOf(call.heading),
          strings.PlaceOf(call.results),
          strings.PlaceOf(call.settingsByHost),
          strings.PlaceOf(call.settingsByModule),
          flags,
          SpansOf(call),
          call.exchanges.size()};
}

Json RowsJson(const std::vector<capture::FieldRow>& rows) {
  Json json = Json::array();
  for (const capture::FieldRow& row : rows) json.push_back({row.name, row.value, row.isTrouble});
  return json;
}

std::string JoinedParts(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) text.append(text.empty() ? "" : ", ").append(part);
  return text;
}

// The exchanges of all calls, column by column.
class ExchangeColumns {
 public:
  explicit ExchangeColumns(StringTable& texts) : strings_(texts) {}

  void Add(const capture::Exchange& exchange) {
    columns_["titles"].push_back(strings_.PlaceOf(exchange.title));
    columns_["parts"].push_back(strings_.PlaceOf(JoinedParts(exchange.parts)));
    columns_["blocks"].push_back(exchange.block);
    columns_["lines"].push_back(exchange.line);
    columns_["rows"].push_back(exchange.rows.empty() ? -1
                                                     : static_cast<std::int64_t>(rows_.size()));
    columns_["spans"].push_back(exchange.transfers);
    troubles_ += exchange.hasTrouble ? '1' : '0';
    if (!exchange.rows.empty()) rows_.push_back(RowsJson(exchange.rows));
  }

  Json Columns() {
    columns_["troubles"] = troubles_;
    return std::move(columns_);
  }
  Json Rows() { return std::move(rows_); }

 private:
  StringTable& strings_;
  std::string troubles_;
  Json rows_ = Json::array();
  Json columns_{{"titles", Json::array()}, {"parts", Json::array()}, {"blocks", Json::array()},
                {"lines", Json::array()},  {"rows", Json::array()},  {"spans", Json::array()}};
};

void AddConversation(Json& report, const Calls& calls, StringTable& strings) {
  ExchangeColumns exchanges(strings);
  report["calls"] = Json::array();
  for (const capture::CallStory& call : calls) {
    report["calls"].push_back(CallJson(call, strings));
    for (const capture::Exchange& exchange : call.exchanges) exchanges.Add(exchange);
  }
  report["exchanges"] = exchanges.Columns();
  report["rows"] = exchanges.Rows();
}

Json CyclesJson(const Calls& calls) {
  Json cycles = Json::array();
  for (std::size_t i = 0; i < calls.size();) {
    const capture::Cycle cycle = capture::FindCycle(calls, i);
    if (cycle.repetitions != 0) cycles.push_back({i, cycle.calls, cycle.repetitions});
    i += cycle.calls * (cycle.repetitions + 1);
  }
  return cycles;
}

std::string NameIn(const std::string& heading) {
  return heading.substr(0, heading.find(','));
}

Json HostCallsJson(const Calls& calls, const Spans& spans) {
  Json rows = Json::array();
  std::map<std::string, std::size_t> places;
  std::size_t span = 0;
  for (const capture::CallStory& call : calls) {
    const std::size_t last = span + SpansOf(call) - 1;
    if (!call.heading.empty()) {
      const auto [place, isNew] = places.try_emplace(NameIn(call.heading), rows.size());
      if (isNew) rows.push_back({place->first, 0, 0, 0});
      Json& row = rows[place->second];
      row[1] = row[1].get<std::uint64_t>() + 1;
      row[2] = row[2].get<std::uint64_t>() + (call.failed || call.IsCutOff() ? 1 : 0);
      row[3] = row[3].get<std::uint64_t>() + spans[last].end - spans[span].end;
    }
    span = last + 1;
  }
  return rows;
}

// Settings count the calls of the host only.
std::vector<std::size_t> PlacesOfHostCalls(const Calls& calls) {
  std::vector<std::size_t> places;
  for (std::size_t i = 0; i < calls.size(); ++i) {
    if (!calls[i].heading.empty()) places.push_back(i);
  }
  return places;
}

Json SettingsJson(const capture::Capture& capture, const Calls& calls) {
  const std::vector<std::size_t> places = PlacesOfHostCalls(calls);
  Json settings = Json::array();
  for (const ChangedSetting& change : ChangedSettingsOf(capture)) {
    const auto place =
        change.call < places.size() ? static_cast<std::int64_t>(places[change.call]) : -1;
    settings.push_back({place, change.member, change.before, change.after, change.byModule});
  }
  return settings;
}

Json FactsJson(const capture::Capture& capture) {
  Json facts = Json::array();
  for (const ScannerFact& fact : ScannerFactsOf(capture)) {
    facts.push_back({fact.label, fact.value});
  }
  return facts;
}

}  // namespace

Json ReportData(const capture::Capture& capture, const std::string& fileName, bool showsPictures) {
  const Calls calls = capture::TellCalls(capture);
  const Spans spans = TimeSpansOf(capture);
  const std::vector<CapturedPage> pages = PagesOf(capture);
  const CapturedOutcome outcome = OutcomeOf(capture, calls, pages);
  StringTable strings;
  Json report{{"file", fileName},
              {"outcome", {{"sentence", outcome.sentence}, {"isTrouble", outcome.isTrouble}}},
              {"notes", NotesOn(capture, pages)},
              {"scanner", FactsJson(capture)},
              {"activities", ActivitiesJson(spans)},
              {"hostCalls", HostCallsJson(calls, spans)},
              {"start", spans.empty() ? 0 : spans.front().begin},
              {"longest", LongestOf(spans, kLongestTold)},
              {"spans", SpansJson(capture, spans, strings)},
              {"failures", FailuresJson(spans)}};
  AddConversation(report, calls, strings);
  report["cycles"] = CyclesJson(calls);
  report["pages"] = PagesJson(pages, showsPictures);
  report["settings"] = SettingsJson(capture, calls);
  report["strings"] = strings.Texts();
  return report;
}

}  // namespace pmscan
