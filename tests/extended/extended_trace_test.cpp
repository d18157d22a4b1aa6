#include <algorithm>
#include <string>

#include "tests/extended/extended_fixture.h"

namespace pmddb832::tests::extended {
namespace {

// An open scanner whose host has a log, empty at first.
struct TracedScanner : ExtendedScanner {
  TracedScanner() { system.logAvailable = true; }

  // The command set's routines that were entered since the last question: "Open GetStatusBuffer".
  // Every routine must have left, the last entered first.
  std::string Entered() {
    constexpr std::string_view kSet = "Extcmd::";
    constexpr std::string_view kEntering = ", entering";
    std::vector<std::string> open;
    std::string entered;
    for (const platform::TraceLine& line : system.logLines) {
      if (line.detail != 3) continue;
      const std::string name = line.text.substr(0, line.text.find(','));
      if (line.text != name + std::string(kEntering)) {
        REQUIRE(!open.empty());
        CHECK(line.text == open.back() + ", leaving");
        open.pop_back();
        continue;
      }
      open.push_back(name);
      if (name.starts_with(kSet)) entered += ' ' + name.substr(kSet.size());
    }
    CHECK(open.empty());
    system.logLines.clear();
    return entered.empty() ? entered : entered.substr(1);
  }

  void OpenUntraced() {
    REQUIRE(Open() == 1);
    system.logLines.clear();
  }
};

TEST_CASE_FIXTURE(TracedScanner, "an open is traced routine by routine") {
  CHECK(Open() == 1);
  CHECK(Entered() ==
        "ExtScanCmd InitWorkArea Open BildScannerInfo SendFSCode GetStatusBuffer SendFSCode "
        "GetScannerProductName");
}

TEST_CASE_FIXTURE(TracedScanner, "a scan is traced routine by routine") {
  OpenUntraced();
  Set("pixelType=5 areaHeightPx=2 colorCorrection=1");
  InitAcquire(1);
  CHECK(Entered() == "InitAcquire SetPixelType");
  device.ExpectBlock(0x1B, 'm', Fill(9, 0));
  AcceptParameters(With(With(ParameterBlock(), 20, {2, 0, 0, 0, 0x13}), 31, {1}));
  AnswerStart(Header(0, 0, 96));
  SendLastBlock(Fill(96, 1));
  CHECK(Acquire(96).record.done == 1);
  CHECK(Entered() ==
        "AcquireImage SetupScanParameter SendCorrectionData SendFSCode StartScanningProcess "
        "CheckWarmup GetStatusBuffer SendFSCode SendFSCode GetScanData BuildTrueColor GetScanData "
        "BuildTrueColor");
}

TEST_CASE_FIXTURE(OpenExtended,
                  "a log that comes amid a block traces the lines behind it one by one") {
  const ReplacedSet replaced;
  settings.areaHeightPx = 9;
  StartScan(With(ParameterBlock(), 20, Word(9)), Header(0, 0, 144), 1);
  SendLastBlock(Ramp(0, 144));
  atPercent = 1;  // at line 5
  duringProgress = [this] {
    system.logAvailable = true;
    CHECK(Open() == 1);
    system.logLines.clear();
  };
  CHECK(Acquire(144).image == Ramp(0, 144));
  std::string traced;
  for (const platform::TraceLine& line : system.logLines) traced += line.text + '\n';
  std::string expected;
  for (int line = 5; line < 9; ++line) {
    expected +=
        "Extcmd::GetScanData, entering\nExtcmd::GetScanData, leaving\n"
        "Scanutil::Pix256MonoFinal, entering\nScanutil::Pix256MonoFinal, leaving\n";
  }
  CHECK(traced == expected);
}

TEST_CASE_FIXTURE(TracedScanner, "the option, paper and error queries are traced") {
  OpenUntraced();
  AnswerStatus();
  PMGetOptionStatus(2);
  CHECK(Entered() == "GetOptionStatus GetStatusBuffer SendFSCode");
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  AnswerIdentity();
  PMGetScanPaperSize(2, &width, &height);
  CHECK(Entered() == "GetScanPaperSize SendFSCode");
  device.ExpectBlock(0x1B, 'e', {0x01});
  PMEnableOption(1);
  CHECK(Entered() == "EnableOption SendESCOneParam");
  PMGetScanError();
  CHECK(Entered() == "GetLastError");
}

TEST_CASE_FIXTURE(TracedScanner, "focus, abort, close and destruction are traced") {
  OpenUntraced();
  device.ExpectBlock(0x1B, 'p', {0x40});
  PMSetFocus(0, 0);
  CHECK(Entered() == "SetFocusPos ExeSetFocusPos SendESCOneParam");
  PMAbortScan();
  CHECK(Entered() == "AbortScan");
  PMCloseScanner();
  CHECK(Entered() == "Close");
  PMExit();
  CHECK(Entered() == "Close ~ExtScanCmd");
}

TEST_CASE_FIXTURE(TracedScanner, "routines that fail leave as well") {
  OpenUntraced();
  InitAcquire();
  device.Unplug();
  CHECK(Acquire(64).record.status == kFailed);
  CHECK(Entered() == "InitAcquire SetPixelType AcquireImage SetupScanParameter SendFSCode");
}

TEST_CASE_FIXTURE(OpenExtended, "without a log nothing is written") {
  ScanPage();
  CHECK(system.logLines.empty());
}

}  // namespace
}  // namespace pmddb832::tests::extended
