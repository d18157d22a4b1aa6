#include "pmscan/report/json_report.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

double RoundedToMilliseconds(double seconds) {
  return std::round(seconds * 1000) / 1000;
}

Json SourceJson(const SourceFacts& facts) {
  Json json{{"name", facts.source.name}, {"fitted", facts.isFitted}};
  if (!facts.isFitted) return json;
  json["widthInches"] = facts.size.width / 100.0;
  json["heightInches"] = facts.size.height / 100.0;
  json["widthPixels"] = facts.widthPixels;
  json["heightPixels"] = facts.heightPixels;
  json["status"] = facts.status;
  json["condition"] = facts.status == 0 ? "ready" : FindErrorCode(facts.status).meaning;
  return json;
}

Json PageJson(const SavedPage& page) {
  return {{"number", page.number},      {"file", page.file},
          {"lines", page.lines},        {"height", page.height},
          {"complete", page.IsWhole()}, {"seconds", RoundedToMilliseconds(page.seconds)}};
}

const char* EndText(const ScanOutcome& outcome) {
  if (!outcome.end) return "broken off";
  return outcome.end == BatchEnd::kFeederEmpty ? "feeder empty" : "all pages";
}

// Pages and files, and their sums.
void AddOutcome(Json& json, const ScanOutcome& outcome) {
  std::uint64_t lines = 0;
  std::uint64_t bytes = 0;
  json["pages"] = Json::array();
  json["files"] = Json::array();
  for (const SavedPage& page : outcome.pages) {
    json["pages"].push_back(PageJson(page));
    lines += page.lines;
  }
  for (const SavedFile& file : outcome.files) {
    json["files"].push_back(
        {{"file", file.name}, {"format", outcome.formatName}, {"bytes", file.bytes}});
    bytes += file.bytes;
  }
  json["lines"] = lines;
  json["bytes"] = bytes;
  json["seconds"] = RoundedToMilliseconds(outcome.seconds);
  json["end"] = EndText(outcome);
}

}  // namespace

Json IdentityJson(const ScannerFacts& scanner) {
  return {{"model", scanner.model},
          {"product", scanner.product},
          {"level", scanner.level},
          {"commands", scanner.isExtended ? "extended" : "standard"}};
}

Json ScannerJson(const ScannerFacts& scanner) {
  Json json = IdentityJson(scanner);
  json["lowestResolution"] = scanner.lowestResolution;
  json["highestResolution"] = scanner.highestResolution;
  json["basicResolution"] = scanner.basicResolution;
  json["halftones"] = scanner.halftones;
  json["sources"] = Json::array();
  for (const SourceFacts& facts : scanner.sources) json["sources"].push_back(SourceJson(facts));
  return json;
}

Json ScanJson(const ScannerFacts& scanner, const ScanSource& source, const ScanRequest& request,
              const ScanOutcome& outcome) {
  Json json = IdentityJson(scanner);
  json["source"] = source.name;
  json["mode"] = request.mode.name;
  json["resolution"] = request.resolution;
  json["zoom"] = request.image.zoom;
  json["width"] = request.area.width;
  json["height"] = request.area.height;
  AddOutcome(json, outcome);
  return json;
}

Json FailureJson(const Failure& failure) {
  const ErrorCode& row = FindErrorCode(failure.code);
  return {{"code", failure.code},
          {"meaning", row.meaning},
          {"detail", failure.what()},
          {"whatToDo", row.whatToDo}};
}

std::string JsonText(const Json& document) {
  return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace pmscan
