#include <doctest/doctest.h>

#include <string>

#include "extended/ext_scan_cmd.h"
#include "platform/trace.h"
#include "tests/interface/module_fixture.h"
#include "tests/interface/open_conversation.h"

namespace pmddb832::tests {
namespace {

constexpr std::uint32_t kDetach = 0;
constexpr std::uint32_t kAttach = 1;

struct Lifecycle : ModuleFixture {
  std::uint32_t Open() { return PMOpenScanner(&settings); }

  std::uint32_t OpenExtended() {
    ScriptExtendedOpen(device);
    return Open();
  }

  bool NothingIsLeft() const { return currentChannel == nullptr && currentCommandSet == nullptr; }

  int instance = 0;  // its address stands for the library's handle
};

}  // namespace

TEST_CASE_FIXTURE(Lifecycle, "a loaded module has no objects and no error") {
  CHECK(DllMain(&instance, kAttach, nullptr) == 1);
  CHECK(moduleInstance == &instance);
  CHECK(NothingIsLeft());
  CHECK(platform::currentLog == nullptr);
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(Lifecycle, "a null instance is refused, whatever the reason") {
  REQUIRE(OpenExtended() == 1);
  for (const std::uint32_t reason : {0U, 1U, 2U, 3U}) CHECK(DllMain(nullptr, reason, nullptr) == 0);
  CHECK(moduleInstance == nullptr);
  CHECK(currentCommandSet != nullptr);
}

TEST_CASE_FIXTURE(Lifecycle, "threads that come and go change nothing") {
  REQUIRE(OpenExtended() == 1);
  for (const std::uint32_t reason : {2U, 3U, 4U, 0xFFFFFFFFU}) {
    CHECK(DllMain(&instance, reason, nullptr) == 1);
  }
  CHECK(moduleInstance == nullptr);
  CHECK(currentCommandSet != nullptr);
}

TEST_CASE_FIXTURE(Lifecycle, "an open of an extended scanner makes log, channel and command set") {
  system.logAvailable = true;
  CHECK(OpenExtended() == 1);
  CHECK(currentSettings == &settings);
  CHECK(platform::currentLog != nullptr);
  CHECK(currentChannel != nullptr);
  CHECK(currentCommandSet != nullptr);
  CHECK(UsesExtendedSet());
  CHECK(serverSupport == 0xFFFF);
  CHECK(settings.scanInfoVariant == 3);
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(Lifecycle, "the result of the open is that of the command set") {
  ScriptOpenWithRefusedReset(device, kAnswersExtended);
  CHECK(Open() == 0);
  CHECK(UsesExtendedSet());
  CHECK(currentCommandSet != nullptr);
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(Lifecycle, "a scanner without extended commands gets the standard set") {
  ScriptOpenWithRefusedReset(device, kStandardOnly);
  CHECK(Open() == 0);
  CHECK_FALSE(UsesExtendedSet());
  CHECK(PMGetScanError() == 1);
}

TEST_CASE_FIXTURE(Lifecycle, "a scanner that does not answer the probe gets the standard set") {
  device.Expect({0x1B, 0x49}).Reply({0x15, 0x00, 0x00, 0x00});
  device.Expect({0x1B, 0x40}).Reply({0x15});
  CHECK(Open() == 0);
  CHECK_FALSE(UsesExtendedSet());
  CHECK(PMGetScanError() == 1);
}

TEST_CASE_FIXTURE(Lifecycle, "a scanner that stops answering the probe keeps the extended set") {
  REQUIRE(OpenExtended() == 1);
  auto* const first = static_cast<ExtScanCmd*>(currentCommandSet);
  device.FailNextWrite().Expect({0x1B, 0x40}).Reply({0x15});
  CHECK(Open() == 0);
  CHECK(UsesExtendedSet());
  CHECK(PMGetScanError() == 0);
  CHECK(device.Verdict() == "as scripted");
  delete first;
}

TEST_CASE("the extended set takes a scanner that answers and a channel that can carry it") {
  const ModuleFixture module;
  struct Row {
    std::uint32_t scanner;
    std::uint32_t channel;
    bool extended;
  };
  for (const Row& row : {Row{0, 0, false}, Row{0, 0xFFFF, false}, Row{1, 0, false},
                         Row{1, 0xFFFB, false}, Row{1, 4, true}, Row{1, 0xFFFF, true}}) {
    extendedSupport = row.scanner;
    serverSupport = row.channel;
    CHECK(UsesExtendedSet() == row.extended);
  }
}

TEST_CASE_FIXTURE(Lifecycle, "a channel can be made alone") {
  CHECK(MakeChannel() == currentChannel);
  CHECK(currentChannel != nullptr);
  CHECK(currentChannel->opened == 0);
  CHECK(currentCommandSet == nullptr);
  CHECK(serverSupport == 0);
}

TEST_CASE_FIXTURE(Lifecycle, "a channel alone is not asked whether it is ready") {
  settings.useDeviceInterface = 0;
  CHECK(MakeChannel() != nullptr);
}

TEST_CASE_FIXTURE(Lifecycle, "a channel that is not ready fails the open and is destroyed") {
  settings.useDeviceInterface = 0;
  CHECK(Open() == 0);
  CHECK(NothingIsLeft());
  CHECK(serverSupport == 0);
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(Lifecycle, "a null record is refused and replaces none") {
  CHECK(PMOpenScanner(nullptr) == 0);
  CHECK(currentSettings == &settings);
  CHECK(NothingIsLeft());
}

TEST_CASE_FIXTURE(Lifecycle, "a failed re-open leaves the old set current, without a channel") {
  REQUIRE(OpenExtended() == 1);
  const GeneralCmd* const first = currentCommandSet;
  settings.useDeviceInterface = 0;
  CHECK(Open() == 0);
  CHECK(currentCommandSet == first);
  CHECK(currentChannel == nullptr);
  CHECK(PMGetScanError() == 0);
  settings.useDeviceInterface = 1;
  CHECK(PMReset() == 0);
  PMCloseScanner();
}

TEST_CASE_FIXTURE(Lifecycle, "a second open makes everything anew and destroys only the channel") {
  system.logAvailable = true;
  REQUIRE(OpenExtended() == 1);
  auto* const first = static_cast<ExtScanCmd*>(currentCommandSet);
  const platform::TraceLog* const firstLog = platform::currentLog;
  CHECK(OpenExtended() == 1);
  CHECK(currentCommandSet != first);
  CHECK(platform::currentLog != firstLog);
  CHECK(system.logReferences == 2);
  CHECK(system.heapBlocks == 2);
  CHECK(device.Verdict() == "as scripted");
  delete first;
  CHECK(system.heapBlocks == 1);
}

TEST_CASE_FIXTURE(Lifecycle, "a close keeps every object, and the scanner can be opened again") {
  REQUIRE(OpenExtended() == 1);
  auto* const first = static_cast<ExtScanCmd*>(currentCommandSet);
  const DeviceDriver* const channel = currentChannel;
  PMCloseScanner();
  CHECK(currentCommandSet == first);
  CHECK(currentChannel == channel);
  CHECK(currentChannel->opened == 0);
  CHECK(OpenExtended() == 1);
  CHECK(currentChannel->opened == 1);
  CHECK(device.Verdict() == "as scripted");
  delete first;
}

TEST_CASE_FIXTURE(Lifecycle, "an unload closes and destroys all and gives the log back") {
  system.logAvailable = true;
  REQUIRE(OpenExtended() == 1);
  CHECK(DllMain(&instance, kDetach, nullptr) == 1);
  CHECK(NothingIsLeft());
  CHECK(system.heapBlocks == 0);
  CHECK(system.logReferences == 0);
  CHECK(platform::currentLog == nullptr);
}

TEST_CASE_FIXTURE(Lifecycle, "an unload before any open has nothing to do") {
  CHECK(DllMain(&instance, kDetach, nullptr) == 1);
  CHECK(NothingIsLeft());
  CHECK(system.logReferences == 0);
}

TEST_CASE_FIXTURE(Lifecycle, "an unload in direct mode closes the device once") {
  static int closed;
  closed = 0;
  REQUIRE(OpenExtended() == 1);
  settings.useDeviceInterface = 0;
  currentChannel->closeEntry = [](std::uintptr_t) { ++closed; };
  DllMain(&instance, kDetach, nullptr);
  CHECK(closed == 1);
}

TEST_CASE_FIXTURE(Lifecycle,
                  "an open channel without a command set is closed in the record's mode") {
  static int closed;
  for (const std::uint32_t useInterface : {0u, 1u}) {
    CAPTURE(useInterface);
    closed = 0;
    MakeChannel()->Open();
    currentChannel->closeEntry = [](std::uintptr_t) { ++closed; };
    settings.useDeviceInterface = useInterface;
    PMExit();
    CHECK(closed == (useInterface == 0 ? 1 : 0));
  }
}

TEST_CASE_FIXTURE(Lifecycle, "an unload without a record closes as in interface mode") {
  static int closed;
  closed = 0;
  REQUIRE(OpenExtended() == 1);
  currentChannel->closeEntry = [](std::uintptr_t) { ++closed; };
  PMSetScannerHardware(nullptr);
  DllMain(&instance, kDetach, nullptr);
  CHECK(closed == 0);
  CHECK(NothingIsLeft());
}

}  // namespace pmddb832::tests
