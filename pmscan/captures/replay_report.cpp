#include "pmscan/captures/replay_report.h"

#include <nlohmann/json.hpp>

#include "capture/file/number_text.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

// Every line of the text behind the label, the second and later ones below the first.
std::string Labelled(const std::string& label, const std::string& text) {
  std::string result = "  " + label;
  for (const char c : text) {
    result += c;
    if (c == '\n') result.append(2 + label.size(), ' ');
  }
  return result + "\n";
}

std::string PictureText(const ReplaySummary& summary) {
  if (summary.isPictureInvented) {
    return "not compared: the capture holds no image data, zeros stood for it";
  }
  if (summary.bands == 0) return "none";
  return capture::Counted(summary.bands, "band") + " of lines, compared by checksum";
}

std::string AnswerText(const ReplaySummary& summary) {
  const ModuleAnswer& answer = *summary.answer;
  const std::string results = capture::Joined(answer.results);
  std::string text =
      "Then         " + answer.call + " returned" + (results.empty() ? "" : " " + results) + "\n";
  if (answer.error.has_value()) {
    text += "Error code   " + std::to_string(*answer.error) + ", " +
            std::string(FindErrorCode(*answer.error).meaning) + "\n";
  }
  if (summary.height == 0) return text + "So far       no picture was begun\n";
  return text + "So far       " + std::to_string(summary.lines) + " of " +
         capture::Counted(summary.height, "line") + " of the picture\n";
}

Json AnswerJson(const ModuleAnswer& answer) {
  Json json{{"call", answer.call}, {"results", Json::object()}};
  for (const capture::FieldRow& row : answer.results) {
    json["results"][row.name.empty() ? "result" : row.name] = row.value;
  }
  if (answer.error.has_value()) {
    json["error"] = {{"code", *answer.error}, {"meaning", FindErrorCode(*answer.error).meaning}};
  }
  return json;
}

}  // namespace

std::string ReplayText(const ReplaySummary& summary) {
  std::string text = "Calls        " + std::to_string(summary.calls) + "\nTransfers    " +
                     std::to_string(summary.transfers) + "\nPicture      " + PictureText(summary) +
                     "\n";
  if (summary.endsInCall) text += "End          within a call, like the capture\n";
  text += "Differences  " + std::to_string(summary.differences) + "\n";
  return summary.answer.has_value() ? text + AnswerText(summary) : text;
}

Json ReplayJson(const ReplaySummary& summary, const std::vector<capture::Difference>& differences) {
  Json json{{"calls", summary.calls},
            {"transfers", summary.transfers},
            {"picture",
             {{"lines", summary.lines},
              {"height", summary.height},
              {"bandsCompared", summary.bands},
              {"hasImageData", !summary.isPictureInvented}}},
            {"endsInCall", summary.endsInCall},
            {"differences", Json::array()}};
  for (const capture::Difference& one : differences) {
    json["differences"].push_back({{"line", one.line},
                                   {"call", one.call},
                                   {"expected", one.expected},
                                   {"came", one.came},
                                   {"decoded", one.decoded}});
  }
  if (summary.answer.has_value()) json["then"] = AnswerJson(*summary.answer);
  return json;
}

std::string Describe(const capture::Difference& difference, const std::string& captureFile) {
  std::string text = captureFile + ", line " + std::to_string(difference.line);
  if (!difference.call.empty()) text += ", in " + difference.call;
  text += ":\n" + Labelled("expected  ", difference.expected);
  text += Labelled("came      ", difference.came);
  if (difference.decoded.empty()) return text;
  return text + Labelled("decoded   ", difference.decoded.substr(0, difference.decoded.size() - 1));
}

}  // namespace pmscan
