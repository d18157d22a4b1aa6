#include "interface/exports.h"

#include <doctest/doctest.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/trace.h"
#include "tests/interface/module_fixture.h"
#include "tests/interface/open_conversation.h"
#include "tests/interface/recording_command_set.h"

namespace pmddb832::tests {
namespace {

// A module whose command set notes its calls.
struct Dispatch : ModuleFixture {
  Dispatch() {
    MakeChannel();
    currentCommandSet = &set;
  }
  ~Dispatch() { currentCommandSet = nullptr; }

  RecordingCommandSet set;
  std::uint8_t buffer[4] = {};
  AcquisitionSetup setup{};
  AcquisitionBand band{};
  std::uint32_t width = 77;
  std::uint32_t height = 88;

  // Every export that needs a command set, and its trace name.
  struct Export {
    std::string name;
    std::function<std::uint32_t()> call;
  };
  std::vector<Export> Exports() {
    return {
        {"PMInitAcquire", [&] { return PMInitAcquire(2, nullptr, &setup), 0U; }},
        {"PMAcquireImage", [&] { return PMAcquireImage(buffer, 4, &band), 0U; }},
        {"PMAbortScan", [] { return PMAbortScan(), 0U; }},
        {"PMCloseScanner", [] { return PMCloseScanner(), 0U; }},
        {"PMGetOptionStatus", [] { return PMGetOptionStatus(2); }},
        {"PMEject", [] { return PMEject(nullptr), 0U; }},
        {"PMFeed", [] { return PMFeed(nullptr), 0U; }},
        {"PMReset", [] { return PMReset(); }},
        {"PMSetFocus", [] { return std::uint32_t{PMSetFocus(0, 9)}; }},
        {"PMEnnableOption", [] { return PMEnableOption(1); }},
        {"PMGetScanPaperSize", [&] { return PMGetScanPaperSize(2, &width, &height); }},
    };
  }

  // Calls each of them: nothing is transferred, written or returned.
  void CheckAllInert() {
    for (const Export& entry : Exports()) {
      CAPTURE(entry.name);
      CHECK(entry.call() == 0);
    }
    CHECK(set.calls.empty());
    CHECK(setup.status == 0);
    CHECK(band.status == 0);
    CHECK(width == 77);
    CHECK(height == 88);
    CHECK(device.Verdict() == "as scripted");
  }
};

void Progress(std::uint32_t /*percent*/) {}

}  // namespace

TEST_CASE_FIXTURE(Dispatch, "PMInitAcquire passes its arguments on") {
  PMInitAcquire(0xFFFFFFFF, &Progress, &setup);
  CHECK(set.calls == "InitAcquire 4294967295; ");
  CHECK((set.progress == &Progress));
  CHECK(set.setup == &setup);
}

TEST_CASE_FIXTURE(Dispatch, "PMAcquireImage passes its arguments on") {
  PMAcquireImage(buffer, 0x80000001, &band);
  CHECK(set.calls == "AcquireImage 2147483649; ");
  CHECK(static_cast<const void*>(set.buffer) == buffer);
  CHECK(set.band == &band);
}

TEST_CASE_FIXTURE(Dispatch, "abort and close go to the command set") {
  PMAbortScan();
  PMCloseScanner();
  CHECK(set.calls == "AbortScan; Close; ");
}

TEST_CASE_FIXTURE(Dispatch, "PMGetOptionStatus asks without a place for the main status") {
  set.result = 13;
  set.mainStatusGiven = true;
  CHECK(PMGetOptionStatus(7) == 13);
  CHECK(set.calls == "GetOptionStatus 7; ");
  CHECK_FALSE(set.mainStatusGiven);
}

TEST_CASE_FIXTURE(Dispatch, "PMSetFocus passes mode and position on and returns eight bits") {
  set.position = 0x9C;
  CHECK(PMSetFocus(256, 0xFE) == 0x9C);
  CHECK(set.calls == "SetFocusPos 256 254; ");
}

TEST_CASE_FIXTURE(Dispatch, "PMEnableOption passes 32 bits on and returns the result") {
  set.result = 0x12345678;
  CHECK(PMEnableOption(0x100) == 0x12345678);
  CHECK(set.calls == "EnableOption 256; ");
}

TEST_CASE_FIXTURE(Dispatch, "PMGetScanPaperSize passes its arguments on") {
  set.result = 7;
  CHECK(PMGetScanPaperSize(1, &width, &height) == 7);
  CHECK(set.calls == "GetScanPaperSize 1; ");
  CHECK(set.width == &width);
  CHECK(set.height == &height);
}

TEST_CASE_FIXTURE(Dispatch, "PMGetScanError asks the command set, and not the probe's code") {
  set.result = 43;
  initialisationError = 8;
  CHECK(PMGetScanError() == 43);
  CHECK(PMGetScanError() == 43);
  CHECK(set.calls == "GetLastError; GetLastError; ");
  CHECK(initialisationError == 8);
}

TEST_CASE_FIXTURE(Dispatch, "without a command set PMGetScanError tells the probe's code once") {
  currentCommandSet = nullptr;
  initialisationError = 8;
  CHECK(PMGetScanError() == 8);
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(Dispatch, "feed, eject and reset go straight to the scanner") {
  device.Expect({0x19}).Reply({0x06});
  PMFeed(buffer);
  device.Expect({0x1B, 0x47});
  set.SendEscCode(CallNow(), 'G');
  device.Expect({0x0C}).Reply({0x06});
  PMEject(buffer);
  device.Expect({0x1B, 0x40}).Reply({0x06});
  CHECK(PMReset() == 1);
  device.Expect({0x1B, 0x40}).Reply({0x15});
  CHECK(PMReset() == 0);
  CHECK(set.calls.empty());
}

TEST_CASE_FIXTURE(Dispatch,
                  "each export traces under its own name, PMEnableOption with a double n") {
  system.logAvailable = true;
  platform::currentLog = platform::CreateTraceLog(nullptr);
  device.Expect({0x19}).Reply({0x06}).Expect({0x1B, 0x40}).Reply({0x06});
  for (const Export& entry : Exports()) {
    CAPTURE(entry.name);
    system.logLines.clear();
    entry.call();
    CHECK(system.logLines.front().text == "Pmddb832::" + entry.name + ", entering");
    CHECK(system.logLines.back().text == "Pmddb832::" + entry.name + ", leaving");
  }
}

TEST_CASE_FIXTURE(Dispatch, "error query and change of record trace under their own names") {
  system.logAvailable = true;
  platform::currentLog = platform::CreateTraceLog(nullptr);
  PMSetScannerHardware(&settings);
  PMGetScanError();
  REQUIRE(system.logLines.size() == 4);
  CHECK(system.logLines[0].text == "Pmddb832::PMSetScannerHardware, entering");
  CHECK(system.logLines[1].text == "Pmddb832::PMSetScannerHardware, leaving");
  CHECK(system.logLines[2].text == "Pmddb832::PMGetScanError, entering");
  CHECK(system.logLines[3].text == "Pmddb832::PMGetScanError, leaving");
}

TEST_CASE_FIXTURE(Dispatch, "before an open every call returns 0 and does nothing") {
  currentCommandSet = nullptr;
  CheckAllInert();
}

TEST_CASE_FIXTURE(Dispatch, "without a record every call returns 0 and does nothing") {
  PMSetScannerHardware(nullptr);
  CheckAllInert();
}

TEST_CASE_FIXTURE(ModuleFixture,
                  "another record takes over with the next call, and nothing of the old") {
  ScriptExtendedOpen(device);
  REQUIRE(PMOpenScanner(&settings) == 1);
  ScriptedDevice other;
  ScannerSettings otherSettings{};
  otherSettings.deviceInterface = &other;
  otherSettings.useDeviceInterface = 1;
  PMSetScannerHardware(&otherSettings);
  CHECK(currentSettings == &otherSettings);
  CHECK(otherSettings.commandLevel == 0);
  CHECK(otherSettings.modelName[0] == '\0');
  other.Expect({0x1B, 0x40}).Reply({0x06});
  CHECK(PMReset() == 1);
  CHECK(other.Verdict() == "as scripted");
  CHECK(device.Verdict() == "as scripted");
  PMSetScannerHardware(&settings);
}

}  // namespace pmddb832::tests
