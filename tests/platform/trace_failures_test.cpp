#include <algorithm>
#include <string>
#include <vector>

#include "tests/interface/open_conversation.h"
#include "tests/safety/failing_allocation.h"
#include "tests/standard/standard_fixture.h"

// What the host's log tells of a call that failed, and of what a start asks the system.

namespace pmddb832::tests {
namespace {

using Lines = std::vector<std::string>;

struct TracedModule : ModuleFixture {
  TracedModule() { system.logAvailable = true; }

  // The last lines of the log.
  Lines Last(std::size_t count) const {
    Lines lines;
    for (const platform::TraceLine& line : system.logLines) lines.push_back(line.text);
    REQUIRE(lines.size() > count);
    return {lines.end() - static_cast<std::ptrdiff_t>(count), lines.end()};
  }
};

struct TracedStandard : standard::StandardScanner {
  TracedStandard() {
    system.logAvailable = true;
    REQUIRE(Open() == 1);
    system.logLines.clear();
  }

  std::ptrdiff_t Count(const std::string& text) const {
    return std::count_if(system.logLines.begin(), system.logLines.end(),
                         [&](const platform::TraceLine& line) { return line.text == text; });
  }
};

}  // namespace

TEST_CASE_FIXTURE(TracedModule, "a probe that failed is asked for its error, and is not closed") {
  MakeChannel();
  device.FailNextWrite();
  CHECK(ExtCommandSupport(CallNow(), 0) == 0);
  CHECK(Last(8) == Lines{"Checkcmd::GetLevelInfo, leaving", "Checkcmd::GetLastError, entering",
                         "Checkcmd::GetLastError, leaving", "Checkcmd::~Checkcmd, entering",
                         "Checkcmd::~Checkcmd, leaving",
                         "Sgeneral::GeneralCmd::~GeneralCmd, entering",
                         "Sgeneral::GeneralCmd::~GeneralCmd, leaving",
                         "Pmddb832::ExtCommandSupport, leaving"});
}

TEST_CASE_FIXTURE(TracedModule,
                  "an open that fails behind its probe closes the channel, then destroys it") {
  ScriptProbe(device, kStandardOnly);
  const AllocationLimit limit(2);
  CHECK(PMOpenScanner(&settings) == 0);
  CHECK(Last(6) == Lines{"Pmddb832::ExtCommandSupport, leaving", "Sddnt::Close, entering",
                         "Sddnt::Close, leaving", "Sddnt::~DeviceDriver, entering",
                         "Sddnt::~DeviceDriver, leaving", "Pmddb832::PMInit, leaving"});
}

TEST_CASE_FIXTURE(TracedStandard, "the start of a standard scan asks for the system, once") {
  ScanPage();
  CHECK(Count("Sddnt::GetOpsys, entering") == 1);
  CHECK(Count("Sddnt::GetOpsys, leaving") == 1);
}

TEST_CASE_FIXTURE(TracedStandard,
                  "a standard scan that is not started does not ask for the system") {
  InitAcquire(1);
  AcceptUpload(standard::UploadOf("B4"));
  device.ExpectBlock(0x1B, 'd', {0x04}).Unplug();
  CheckAcquireFails(64, 22);
  CHECK(Count("Sddnt::GetOpsys, entering") == 0);
}

}  // namespace pmddb832::tests
