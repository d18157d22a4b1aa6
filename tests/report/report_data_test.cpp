#include "pmscan/report_page/report_data.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "pmscan/report_page/report_page.h"
#include "tests/capture/sample_conversation.h"
#include "tests/report/capture_text.h"

namespace {

using Json = nlohmann::ordered_json;
using pmddb832::tests::SampleConversation;
using pmscan::tests::CaptureOf;

// A command of the host, one that goes wrong, and one that fails amid its transfer.
constexpr const char* kTrouble =
    "host zoom = 100\n"
    "call PMReset @0.5\n"
    "  write 2 : 1B 40 @0.501\n"
    "  read 1 : 15 @0.503\n"
    "return PMReset result=0 @0.504\n"
    "write 2 : 1C 46 @0.6\n"
    "read 16 got 3 result 80070079 : 00 80 00 @0.7\n";

Json Data(const std::string& lines) {
  return pmscan::ReportData(CaptureOf(lines), "some.capture", true);
}

TEST_CASE("each span is told with its kind, its activity, its length and its bytes") {
  const Json spans = Data(kTrouble)["spans"];
  CHECK(spans["kinds"] == "bwrewr");
  CHECK(spans["activities"] == "023103");
  CHECK(spans["lengths"] == Json({0, 1000, 2000, 1000, 96000, 100000}));
  CHECK(spans["bytes"] == Json({0, 2, 1, 0, 2, 3}));
}

TEST_CASE("bytes are kept once each, and told by their places") {
  const Json data = Data(kTrouble);
  const Json hex = data["spans"]["hex"];
  CHECK(hex[0] == -1);
  CHECK(data["strings"][hex[1].get<std::size_t>()] == "1B 40");
  CHECK(data["strings"][hex[2].get<std::size_t>()] == "15");
  CHECK(data["strings"][hex[5].get<std::size_t>()] == "00 80 00");
}

TEST_CASE("blocks of a picture are not told in bytes, however short and whatever was recorded") {
  const Json hex = Data(
      "write 2 : 1C 47\n"
      "read 14 : 02 00 02 00 00 00 01 00 00 00 00 00 00 00\n"
      "read 3 : 55 AA 00\n")["spans"]["hex"];
  CHECK(hex[1] != -1);
  CHECK(hex[2] == -1);
}

TEST_CASE("a transfer that failed is told with what was asked for and its result") {
  CHECK(Data(kTrouble)["failures"] == Json::parse(R"([[5, 16, "0x80070079, it took too long"]])"));
}

TEST_CASE("exchanges are told with their trouble, their lines and their spans") {
  const Json exchanges = Data(kTrouble)["exchanges"];
  CHECK(exchanges["troubles"] == "11");
  CHECK(exchanges["lines"] == Json({5, 8}));
  CHECK(exchanges["spans"] == Json({2, 2}));
}

TEST_CASE("calls hold their spans and exchanges, and transfers outside of calls are one") {
  const Json data = Data(kTrouble);
  REQUIRE(data["calls"].size() == 2);
  CHECK(data["calls"][0][4] == 1);
  CHECK(data["calls"][0][5] == 4);
  CHECK(data["calls"][0][6] == 1);
  CHECK(data["calls"][1][4] == 4);
  CHECK(data["calls"][1][5] == 2);
  CHECK(data["hostCalls"] == Json::parse(R"([["PMReset", 1, 1, 4000]])"));
}

TEST_CASE("settings name the place of their call among all that is told") {
  CHECK(Data(kTrouble)["settings"] == Json::parse(R"([[0, "zoom", "0", "100", false]])"));
  CHECK(Data("write 2 : 1B 40\nread 1 : 06\nhost zoom = 3\ncall PMFeed\n")["settings"][0][0] == 1);
  CHECK(Data("host zoom = 3\n")["settings"][0][0] == -1);
}

TEST_CASE("calls that repeat are told as a cycle") {
  std::string lines;
  for (int i = 0; i < 5; ++i) lines += "call PMReset\nreturn PMReset result=1\n";
  CHECK(Data(lines)["cycles"] == Json::parse("[[0, 1, 4]]"));
}

TEST_CASE("pictures are left out, but their blocks stay") {
  const SampleConversation sample = pmddb832::tests::ExtendedSample();
  const Json with = pmscan::ReportData(sample.capture, "x", true)["pages"][0];
  const Json without = pmscan::ReportData(sample.capture, "x", false)["pages"][0];
  CHECK(with["image"].get<std::string>().starts_with("data:image/png;base64,"));
  CHECK(with["imageLines"] == 16);
  CHECK(without["image"] == "");
  CHECK(without["blocks"] == with["blocks"]);
  CHECK(without["blocks"] == Json::parse("[[16, 1600, false], [16, 1600, false], [8, 800, true]]"));
}

std::string HostilePage() {
  SampleConversation sample;
  const std::string name = "</script><script>alert(1)</script><!--\xE2\x80\xA8\xFF";
  sample.Call(name, {{name, 1}}).Write({0x1B, '@'}).Read({0x15}).Return({{name, 1}});
  return pmscan::ReportPage(sample.capture, name, true);
}

std::size_t CountOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

TEST_CASE("no text of a device or of a file's name breaks out of the page's data") {
  const std::string page = HostilePage();
  CHECK(CountOf(page, "<script") == 2);
  CHECK(CountOf(page, "</script>") == 2);
  CHECK(CountOf(page, "<!--") == 0);
  CHECK(page.find("\\u003c/script>") != std::string::npos);
}

TEST_CASE("a page is plain ASCII, and needs nothing from elsewhere") {
  const std::string page = HostilePage();
  CHECK(std::all_of(page.begin(), page.end(), [](char letter) { return letter > 0; }));
  CHECK(CountOf(page, "http:") == 0);
  CHECK(CountOf(page, "https:") == 0);
  CHECK(CountOf(page, "url(") == 0);
  CHECK(CountOf(page, "src=") == 0);
}

TEST_CASE("the data of a page can be read as they were written") {
  const std::string page = pmscan::ReportPage(CaptureOf(kTrouble), "a < b", true);
  const std::string begin = "<script type=\"application/json\" id=\"data\">";
  const std::size_t from = page.find(begin) + begin.size();
  const Json data = Json::parse(page.substr(from, page.find("</script>", from) - from));
  CHECK(data["file"] == "a < b");
}

TEST_CASE("the same capture gives the same page") {
  CHECK(pmscan::ReportPage(CaptureOf(kTrouble), "x", true) ==
        pmscan::ReportPage(CaptureOf(kTrouble), "x", true));
}

}  // namespace
