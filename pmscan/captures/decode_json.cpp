#include "pmscan/captures/decode_json.h"

#include <nlohmann/json.hpp>

#include "capture/decode/decode.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/report/json_report.h"

namespace pmscan {
namespace {

using capture::CallStory;
using capture::Exchange;

// The objects of a text, one a line.
class ObjectLines {
 public:
  void Add(const Json& object) {
    text_ += object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
  }
  // A sentence, unless there is none.
  void Add(const char* kind, const std::string& told, bool isTrouble = false) {
    if (!told.empty()) Add(Json{{"kind", kind}, {"told", told}, {"trouble", isTrouble}});
  }
  const std::string& Text() const { return text_; }

 private:
  std::string text_;
};

Json ExchangeJson(const Exchange& exchange) {
  Json json{{"kind", exchange.block != 0 ? "block" : "exchange"},
            {"told", exchange.title},
            {"parts", exchange.parts},
            {"trouble", exchange.hasTrouble}};
  if (exchange.block != 0) json["block"] = exchange.block;
  if (exchange.line != 0) json["line"] = exchange.line;
  return json;
}

void AddExchange(ObjectLines& lines, const Exchange& exchange) {
  lines.Add(ExchangeJson(exchange));
  for (const capture::FieldRow& row : exchange.rows) {
    lines.Add(Json{
        {"kind", "field"}, {"told", row.name}, {"value", row.value}, {"trouble", row.isTrouble}});
  }
}

void AddCall(ObjectLines& lines, const CallStory& call) {
  const std::string heading = call.heading.empty() ? "outside the host's calls" : call.heading;
  lines.Add(Json{{"kind", "call"},
                 {"told", heading},
                 {"seconds", static_cast<double>(call.microseconds) / 1'000'000},
                 {"trouble", call.failed || call.IsCutOff()}});
  lines.Add("settings by the host", call.settingsByHost);
  for (const Exchange& exchange : call.exchanges) AddExchange(lines, exchange);
  lines.Add("settings by the module", call.settingsByModule);
  if (call.IsCutOff()) {
    lines.Add("end", "the capture ends here, before the call returned", true);
  }
  lines.Add("return", call.results, call.failed);
}

}  // namespace

std::string DecodeJson(const capture::Capture& capture) {
  const std::vector<CallStory> calls = capture::TellCalls(capture);
  ObjectLines lines;
  lines.Add("summary", capture::Summarize(calls));
  for (const CallStory& call : calls) AddCall(lines, call);
  return lines.Text();
}

std::string DecodeFailureJson(const Failure& failure) {
  const int exitCode = FindErrorCode(failure.code).ExitCode();
  ObjectLines lines;
  lines.Add(Json{{"error", FailureJson(failure)}, {"exitCode", exitCode}});
  return lines.Text();
}

}  // namespace pmscan
