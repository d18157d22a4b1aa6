#include <doctest/doctest.h>

#include <nlohmann/json.hpp>

#include "pmscan/report/error_codes.h"
#include "pmscan/report/json_report.h"

namespace {

using pmscan::Json;

pmscan::ScannerFacts Scanner() {
  pmscan::ScannerFacts facts;
  facts.model = "QM2500";
  facts.product = "SCANNER QM-2500";
  facts.level = "B7";
  facts.isExtended = true;
  facts.lowestResolution = 50;
  facts.highestResolution = 1200;
  return facts;
}

pmscan::ScanOutcome TwoPages() {
  pmscan::ScanOutcome outcome;
  outcome.pages = {{1, "1.png", 100, 100, 0.5}, {2, "2.png", 30, 100, 0.2504}};
  outcome.files = {{"1.png", 5000}, {"2.png", 700}};
  outcome.formatName = "PNG";
  outcome.seconds = 1.25;
  return outcome;
}

Json JsonOf(const pmscan::ScanOutcome& outcome) {
  const pmscan::ScanRequest request{
      *pmscan::FindScanMode("grey"), 300, {0, 0, 2550, 100}, false, false};
  return ScanJson(Scanner(), *pmscan::FindScanSource("feeder"), request, outcome);
}

TEST_CASE("pmscan: the JSON of a scan lists pages and files and sums them up") {
  const Json json = JsonOf(TwoPages());
  CHECK(json["pages"].size() == 2);
  CHECK(json["pages"][0] == Json::parse(R"({"number": 1, "file": "1.png", "lines": 100,
    "height": 100, "complete": true, "seconds": 0.5})"));
  CHECK(json["pages"][1]["complete"] == false);
  CHECK(json["pages"][1]["seconds"] == 0.25);
  CHECK(json["files"][1] == Json::parse(R"({"file": "2.png", "format": "PNG", "bytes": 700})"));
  CHECK(json["lines"] == 130);
  CHECK(json["bytes"] == 5700);
  CHECK(json["seconds"] == 1.25);
}

TEST_CASE("pmscan: the JSON of a scan tells what was scanned, and how it ended") {
  pmscan::ScanOutcome outcome = TwoPages();
  CHECK(JsonOf(outcome)["end"] == "broken off");
  outcome.end = pmscan::BatchEnd::kAllPages;
  CHECK(JsonOf(outcome)["end"] == "all pages");
  outcome.end = pmscan::BatchEnd::kFeederEmpty;
  const Json json = JsonOf(outcome);
  CHECK(json["end"] == "feeder empty");
  CHECK(json["source"] == "feeder");
  CHECK(json["mode"] == "grey");
  CHECK(json["resolution"] == 300);
  CHECK(json["width"] == 2550);
}

TEST_CASE("pmscan: the JSON of a scanner has its sources with their condition") {
  pmscan::ScannerFacts facts = Scanner();
  facts.sources = {{*pmscan::FindScanSource("feeder"), true, {850, 1400}, 10200, 16800, 13},
                   {*pmscan::FindScanSource("transparency"), false, {}, 0, 0, 0}};
  const Json json = ScannerJson(facts);
  CHECK(json["commands"] == "extended");
  CHECK(json["highestResolution"] == 1200);
  CHECK(json["sources"][0] == Json::parse(R"({"name": "feeder", "fitted": true,
    "widthInches": 8.5, "heightInches": 14.0, "widthPixels": 10200, "heightPixels": 16800,
    "status": 13, "condition": "the document feeder is empty"})"));
  CHECK(json["sources"][1] == Json::parse(R"({"name": "transparency", "fitted": false})"));
}

TEST_CASE("pmscan: the JSON of a failure says what the message says") {
  const Json json = pmscan::FailureJson(pmscan::Failure(pmscan::kOptionEmpty, "Nothing."));
  CHECK(json == Json::parse(R"({"code": 13, "meaning": "the document feeder is empty",
    "detail": "Nothing.", "whatToDo": "Load paper into the feeder, then scan again."})"));
}

TEST_CASE("pmscan: bytes that are not UTF-8 do not stop a report") {
  CHECK(pmscan::JsonText({{"name", "a\xFF"}}) == "{\n  \"name\": \"a\xEF\xBF\xBD\"\n}\n");
}

}  // namespace
