#include <doctest/doctest.h>

#include "pmscan/report_page/captured_settings.h"
#include "tests/report/capture_text.h"

namespace {

using pmscan::ChangedSetting;
using pmscan::ScannerFact;
using pmscan::tests::CaptureOf;

TEST_CASE("a setting is told with what it was before, who changed it and in which call") {
  const std::vector<ChangedSetting> changes =
      pmscan::ChangedSettingsOf(CaptureOf("host resolution = 300\n"
                                          "call PMOpenScanner\n"
                                          "module modelName = \"QM2500\"\n"
                                          "return PMOpenScanner result=1\n"
                                          "host resolution = 75\n"
                                          "call PMInitAcquire\n"
                                          "return PMInitAcquire status=1\n"
                                          "host zoom = 200\n"));
  REQUIRE(changes.size() == 4);
  CHECK(changes[0].member == "resolution");
  CHECK(changes[0].before == "0");
  CHECK(changes[0].after == "300");
  CHECK_FALSE(changes[0].byModule);
  CHECK(changes[0].call == 0);
  CHECK(changes[1].after == "\"QM2500\"");
  CHECK(changes[1].byModule);
  CHECK(changes[1].call == 0);
  CHECK(changes[2].before == "300");
  CHECK(changes[2].after == "75");
  CHECK(changes[2].call == 1);
  CHECK(changes[3].call == 2);
}

TEST_CASE("a setting that is bytes is told by their count") {
  const std::vector<ChangedSetting> changes =
      pmscan::ChangedSettingsOf(CaptureOf("host colorMatrix : 20 00 00 00 20 00 00 00 20\n"));
  CHECK(changes.at(0).before == "9 bytes");
  CHECK(changes.at(0).after == "9 bytes");
}

std::string FactOf(const std::vector<ScannerFact>& facts, const std::string& label) {
  for (const ScannerFact& fact : facts) {
    if (fact.label == label) return fact.value;
  }
  return "none";
}

TEST_CASE("the scanner is told by the settings that the module filled") {
  const std::vector<ScannerFact> facts = pmscan::ScannerFactsOf(
      CaptureOf("call PMOpenScanner\nmodule commandLevelText = \"B7\"\nmodule commandLevel = 7\n"
                "module modelName = \"QM2500\"\nmodule productNameReply = \"SCANNER QM-2500 \"\n"
                "module maxResolutionCopy = 1200\nmodule minResolutionCopy = 50\n"
                "return PMOpenScanner result=1\n"));
  CHECK(FactOf(facts, "Model") == "QM2500 (SCANNER QM-2500)");
  CHECK(FactOf(facts, "Command level").starts_with("B7, "));
  CHECK(FactOf(facts, "Resolutions") == "50 to 1200 dpi");
}

TEST_CASE("where no calls were recorded the scanner is told by its answers") {
  const std::vector<ScannerFact> facts =
      pmscan::ScannerFactsOf(CaptureOf("write 2 : 1B 49\nread 4 : 02 00 0D 00\n"
                                       "read 13 : 42 35 52 32 00 52 2C 01 41 EC 13 6C 1B\n"));
  CHECK(FactOf(facts, "Command level") == "\"B5\"");
  CHECK(FactOf(facts, "Resolutions") == "50, 300 dpi");
  CHECK(FactOf(facts, "Largest area") == "5100 x 7020 pixels");
}

TEST_CASE("of a scanner that said nothing nothing is told") {
  CHECK(pmscan::ScannerFactsOf(CaptureOf("write 2 : 1B 40\nread 1 : 06\n")).empty());
}

}  // namespace
