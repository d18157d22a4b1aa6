#include <doctest/doctest.h>

#include <memory>

#include "extended/ext_scan_cmd.h"
#include "interface/command_level_probe.h"
#include "standard/std_scan_cmd.h"
#include "tests/interface/module_fixture.h"
#include "tests/interface/open_conversation.h"

// Command sets and probe whose channel is not there, or does not open.

namespace pmddb832::tests {
namespace {

void DestroyChannel() {
  delete currentChannel;
  currentChannel = nullptr;
}

// Neither writes nor reads anything.
void CheckNothingOpens(ModuleFixture& module) {
  ExtScanCmd extended(0);
  REQUIRE(extended.InitWorkArea() == 1);
  CHECK(extended.Open(module.CallNow()) == 0);
  StdScanCmd standard(0);
  CHECK(standard.Open(module.CallNow()) == 0);
  CHECK(standard.GetLastError() == 7);
  CHECK(Checkcmd(0).Open(module.CallNow()) == 0);
  CHECK(module.device.Verdict() == "as scripted");
}

}  // namespace

TEST_CASE_FIXTURE(ModuleFixture, "nothing opens without a channel") {
  CheckNothingOpens(*this);
}

TEST_CASE_FIXTURE(ModuleFixture, "a probe whose channel went away closes without it") {
  MakeChannel();
  Checkcmd probe(0);
  REQUIRE(probe.Open(CallNow()) == 1);
  DestroyChannel();
  probe.Close(CallNow());
}

TEST_CASE_FIXTURE(ModuleFixture, "a scanner whose channel went away closes without it") {
  ScriptExtendedOpen(device);
  REQUIRE(PMOpenScanner(&settings) == 1);
  DestroyChannel();
  PMCloseScanner();
  CHECK(system.heapBlocks == 0);
}

}  // namespace pmddb832::tests
