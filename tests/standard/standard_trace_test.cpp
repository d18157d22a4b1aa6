#include <algorithm>
#include <memory>
#include <set>

#include "standard/std_scan_cmd.h"
#include "tests/standard/standard_fixture.h"

// The names under which the routines of the standard set appear in the host's log.

namespace pmddb832::tests::standard {
namespace {

constexpr std::string_view kRoom = "Scmdnt::";
constexpr std::string_view kEntering = ", entering";

// Routines of the set that were entered, in the order of their first entry.
std::vector<std::string> Entered(const platform::NativePlatform& system) {
  std::vector<std::string> names;
  std::set<std::string> known;
  for (const platform::TraceLine& line : system.logLines) {
    const std::size_t end = line.text.find(kEntering);
    if (line.text.find(kRoom) != 0 || end == std::string::npos) continue;
    const std::string name = line.text.substr(kRoom.size(), end - kRoom.size());
    if (known.insert(name).second) names.push_back(name);
  }
  return names;
}

// What is traced of a line of grey whose block is there.
const std::vector<std::string> kLineOfGrey{
    "Scmdnt::GetScanLine, entering",       "Scmdnt::NextScanStep, entering",
    "Scmdnt::NextScanStep, leaving",       "Scmdnt::GetScanLine, leaving",
    "Scanutil::Pix256MonoFinal, entering", "Scanutil::Pix256MonoFinal, leaving"};

struct TracedScanner : StandardScanner {
  TracedScanner() { system.logAvailable = true; }
};

TEST_CASE_FIXTURE(TracedScanner, "standard: the trace of an open and a close") {
  REQUIRE(Open(Identity(), Status(0, 0x80)) == 1);
  PMCloseScanner();
  PMGetScanError();
  PMExit();
  CHECK(Entered(system) == std::vector<std::string>{"StdScanCmd", "Open", "GetScanInfo",
                                                    "GetScannerProductName", "GetStatusNoE",
                                                    "GetDocFeedOptions", "GetMaxScan", "CLose",
                                                    "GetLastError", "~StdScanCmd"});
}

TEST_CASE_FIXTURE(TracedScanner, "standard: the trace of a scan") {
  REQUIRE(Open() == 1);
  system.logLines.clear();
  Set("zoom=200 resolution=401 customGamma=1 monoScan=1");
  InitAcquire(1);
  device.Expect({0x1B, 0x46}).Reply({0x02, 0x00, 0x00, 0x00});
  for (int sender = 0; sender < 10; ++sender) device.FailNextWrite();  // all but ESC d
  device.FailNextWrite();
  AnswerStart(BlockHeader(0x00, 16, 4));
  SendLines(Ramp(0, 64));
  Acquire(64);
  device.FailNextRead();
  PMAbortScan();
  CHECK(Entered(system) == std::vector<std::string>{"InitAcquire", "SetPixelType", "AcquireImage",
                                                    "InitiateScan", "UpdateSettings", "CheckStatus",
                                                    "SendParam2", "SendParam4", "SendParamW3",
                                                    "SendParam3", "MaximumWidth", "SendParamW5",
                                                    "CheckWarmup", "GetStatusNoE", "GetScanLine",
                                                    "NextScanStep", "AbortScan"});
}

TEST_CASE_FIXTURE(TracedScanner,
                  "standard: each line of a block is traced, fetched and converted") {
  REQUIRE(Open() == 1);
  system.logLines.clear();
  REQUIRE(ScanPage().record.lines == 4);
  for (const std::string& text : kLineOfGrey) {
    CAPTURE(text);
    const auto isText = [&](const platform::TraceLine& line) { return line.text == text; };
    CHECK(std::count_if(system.logLines.begin(), system.logLines.end(), isText) == 4);
  }
}

TEST_CASE_FIXTURE(OpenB4,
                  "standard: a log that comes amid a block traces the lines behind it one by one") {
  const std::unique_ptr<StdScanCmd> replaced(static_cast<StdScanCmd*>(currentCommandSet));
  settings.areaHeightPx = 13;
  StartWithoutUpload(BlockHeader(0x20, 16, 13));
  device.Reply(Ramp(0, 208));
  atPercent = 1;  // at line 10
  duringProgress = [this] {
    system.logAvailable = true;
    CHECK(Open() == 1);
    system.logLines.clear();
  };
  CHECK(Acquire(208).image == Ramp(0, 208));
  std::vector<std::string> texts;
  for (const platform::TraceLine& line : system.logLines) texts.push_back(line.text);
  std::vector<std::string> expected;
  for (int line = 10; line < 13; ++line) {
    expected.insert(expected.end(), kLineOfGrey.begin(), kLineOfGrey.end());
  }
  CHECK(texts == expected);
}

TEST_CASE_FIXTURE(TracedScanner, "standard: the trace of the queries and of focus") {
  REQUIRE(Open(Identity("B8")) == 1);
  system.logLines.clear();
  device.FailNextWrite().FailNextWrite().FailNextWrite().FailNextWrite();
  std::uint32_t width = 0;
  PMGetOptionStatus(0);
  PMGetScanPaperSize(0, &width, &width);
  PMEnableOption(0);
  PMSetFocus(0, 0);
  CHECK(Entered(system) == std::vector<std::string>{"GetOptionStatus", "GetStatusNoE",
                                                    "GetScanPaperSize", "EnableOption",
                                                    "SendParam2", "SetFocusPos", "ExeSetFocusPos"});
}

TEST_CASE_FIXTURE(TracedScanner, "standard: every routine that was entered was left") {
  REQUIRE(Open() == 1);
  ScanPage();
  PMExit();
  std::size_t entered = 0;
  std::size_t left = 0;
  for (const platform::TraceLine& line : system.logLines) {
    if (line.text.find(kEntering) != std::string::npos) ++entered;
    if (line.text.find(", leaving") != std::string::npos) ++left;
  }
  CHECK(entered == left);
  CHECK(entered > 100);
}

}  // namespace
}  // namespace pmddb832::tests::standard
