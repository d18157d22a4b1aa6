#include "platform/trace.h"

#include <doctest/doctest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/interface/module_fixture.h"
#include "tests/interface/open_conversation.h"

namespace pmddb832::tests {
namespace {

using Lines = std::vector<std::string>;

std::string Joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

struct TraceFixture : ModuleFixture {
  TraceFixture() { system.logAvailable = true; }

  void StartLog() { platform::currentLog = platform::CreateTraceLog(nullptr); }

  Lines Texts() const {
    Lines lines;
    for (const platform::TraceLine& line : system.logLines) lines.push_back(line.text);
    return lines;
  }

  // What was written since the last call.
  std::string TakeLines() {
    std::string text = Joined(Texts());
    system.logLines.clear();
    return text;
  }
};

}  // namespace

TEST_CASE_FIXTURE(TraceFixture, "a scope writes entering and leaving, with detail 3") {
  StartLog();
  { const TraceScope scope{"Room::Routine"}; }
  REQUIRE(system.logLines.size() == 2);
  CHECK(system.logLines[0].text == "Room::Routine, entering");
  CHECK(system.logLines[0].detail == 3);
  CHECK(system.logLines[1].text == "Room::Routine, leaving");
  CHECK(system.logLines[1].detail == 3);
}

TEST_CASE_FIXTURE(TraceFixture, "the line that leaves is written on every return path") {
  StartLog();
  const auto routine = [](int argument) {
    const TraceScope scope{"Room::Routine"};
    if (argument == 0) return 0;
    return argument + 1;
  };
  CHECK(routine(0) == 0);
  CHECK(routine(1) == 2);
  CHECK(TakeLines() == Joined({"Room::Routine, entering", "Room::Routine, leaving",
                               "Room::Routine, entering", "Room::Routine, leaving"}));
}

TEST_CASE_FIXTURE(TraceFixture, "without a log nothing is written") {
  { const TraceScope scope{"Room::Routine"}; }
  CHECK(system.logLines.empty());
}

TEST_CASE_FIXTURE(TraceFixture, "a scope that was entered without a log leaves without one") {
  {
    const TraceScope scope{"Room::Routine"};
    StartLog();
  }
  CHECK(system.logLines.empty());
}

TEST_CASE_FIXTURE(TraceFixture, "a scope leaves in the log that it entered in") {
  StartLog();
  {
    const TraceScope scope{"Room::Routine"};
    StartLog();
  }
  {
    const TraceScope scope{"Room::Next"};
    platform::currentLog = nullptr;
  }
  REQUIRE(system.logLines.size() == 4);
  CHECK(system.logLines[1].text == "Room::Routine, leaving");
  CHECK(system.logLines[1].log == 1);
  CHECK(system.logLines[2].log == 2);
  CHECK(system.logLines[3].text == "Room::Next, leaving");
  CHECK(system.logLines[3].log == 2);
}

TEST_CASE_FIXTURE(TraceFixture, "the first open starts with the load line, of detail 1") {
  settings.useDeviceInterface = 0;
  CHECK(PMOpenScanner(&settings) == 0);
  CHECK(system.logLines.front().detail == 1);
  CHECK(TakeLines() == Joined({"driver Loaded successfully", "Pmddb832::PMInit, entering",
                               "Sddnt::DeviceDriver, entering", "Sddnt::DeviceDriver, leaving",
                               "Sddnt::IsReady, entering", "Sddnt::IsReady, leaving",
                               "Sddnt::~DeviceDriver, entering", "Sddnt::~DeviceDriver, leaving",
                               "Pmddb832::PMInit, leaving"}));
}

TEST_CASE_FIXTURE(TraceFixture,
                  "a further open enters and leaves in the old log, the rest in a new") {
  settings.useDeviceInterface = 0;
  PMOpenScanner(&settings);
  system.logLines.clear();
  PMOpenScanner(&settings);
  const std::vector<platform::TraceLine>& lines = system.logLines;
  CHECK(lines.front().text == "Pmddb832::PMOpenScanner, entering");
  CHECK(lines.front().log == 1);
  CHECK(lines[1].text == "driver Loaded successfully");
  CHECK(lines[1].detail == 1);
  for (std::size_t i = 1; i + 1 < lines.size(); ++i) CHECK(lines[i].log == 2);
  CHECK(lines.back().text == "Pmddb832::PMOpenScanner, leaving");
  CHECK(lines.back().log == 1);
}

TEST_CASE_FIXTURE(TraceFixture, "a host without a log gets no line, and the open goes on") {
  system.logAvailable = false;
  ScriptExtendedOpen(device);
  CHECK(PMOpenScanner(&settings) == 1);
  CHECK(system.logLines.empty());
}

TEST_CASE_FIXTURE(TraceFixture, "a log that can no longer be created is not written to any more") {
  settings.useDeviceInterface = 0;
  PMOpenScanner(&settings);
  system.logLines.clear();
  system.logAvailable = false;
  PMOpenScanner(&settings);
  CHECK(platform::currentLog == nullptr);
  CHECK(TakeLines() ==
        Joined({"Pmddb832::PMOpenScanner, entering", "Pmddb832::PMOpenScanner, leaving"}));
}

TEST_CASE_FIXTURE(TraceFixture,
                  "an unload ends with the unload line, of detail 1, untraced itself") {
  int instance = 0;
  StartLog();
  DllMain(&instance, 1, nullptr);
  DllMain(&instance, 2, nullptr);
  CHECK(TakeLines() == "");
  DllMain(&instance, 0, nullptr);
  CHECK(system.logLines.back().detail == 1);
  CHECK(TakeLines() == Joined({"Pmddb832::PMExit, entering", "Pmddb832::PMExit, leaving",
                               "driver Unloaded successfully"}));
  CHECK(system.logReferences == 0);
}

TEST_CASE_FIXTURE(TraceFixture,
                  "an unload closes and destroys the set, then destroys the channel") {
  ScriptExtendedOpen(device);
  PMOpenScanner(&settings);
  system.logLines.clear();
  PMExit();
  CHECK(TakeLines() ==
        Joined({"Pmddb832::PMExit, entering", "Extcmd::Close, entering", "Sddnt::Close, entering",
                "Sddnt::Close, leaving", "Extcmd::Close, leaving", "Extcmd::~ExtScanCmd, entering",
                "Extcmd::~ExtScanCmd, leaving", "Sgeneral::GeneralCmd::~GeneralCmd, entering",
                "Sgeneral::GeneralCmd::~GeneralCmd, leaving", "Sddnt::~DeviceDriver, entering",
                "Sddnt::~DeviceDriver, leaving", "Pmddb832::PMExit, leaving"}));
}

TEST_CASE_FIXTURE(TraceFixture, "the probe is traced routine by routine") {
  MakeChannel();
  ScriptProbe(device, kAnswersExtended);
  system.logLines.clear();
  ExtCommandSupport(CallNow(), 0);
  const Lines read{"Sgeneral::LocalType::Read, entering", "Sddnt::Read, entering",
                   "Sddnt::Read, leaving", "Sgeneral::LocalType::Read, leaving"};
  const Lines before{"Pmddb832::ExtCommandSupport, entering",
                     "Sgeneral::GeneralCmd::GeneralCmd, entering",
                     "Sgeneral::GeneralCmd::GeneralCmd, leaving",
                     "Checkcmd::Checkcmd, entering",
                     "Checkcmd::Checkcmd, leaving",
                     "Checkcmd::Open, entering",
                     "Sddnt::Open, entering",
                     "Sddnt::Open, leaving",
                     "Checkcmd::Open, leaving",
                     "Checkcmd::GetLevelInfo, entering",
                     "Sgeneral::GeneralCmd::SendEscCode, entering",
                     "Sgeneral::LocalType::SendEscCode, entering",
                     "Sgeneral::LocalType::Write, entering",
                     "Sddnt::Write, entering",
                     "Sddnt::Write, leaving",
                     "Sgeneral::LocalType::Write, leaving",
                     "Sgeneral::LocalType::SendEscCode, leaving",
                     "Sgeneral::GeneralCmd::SendEscCode, leaving"};
  const Lines after{"Checkcmd::GetLevelInfo, leaving",
                    "Checkcmd::Close, entering",
                    "Sddnt::Close, entering",
                    "Sddnt::Close, leaving",
                    "Checkcmd::Close, leaving",
                    "Checkcmd::~Checkcmd, entering",
                    "Checkcmd::~Checkcmd, leaving",
                    "Sgeneral::GeneralCmd::~GeneralCmd, entering",
                    "Sgeneral::GeneralCmd::~GeneralCmd, leaving",
                    "Pmddb832::ExtCommandSupport, leaving"};
  CHECK(TakeLines() == Joined(before) + Joined(read) + Joined(read) + Joined(after));
}

}  // namespace pmddb832::tests
