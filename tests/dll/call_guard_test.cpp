#define WIN32_LEAN_AND_MEAN
#include "tests/scans/call_guard.h"

#include <windows.h>
#include <doctest/doctest.h>

#include <algorithm>
#include <array>
#include <string>

#include "simulator/catalog/catalog.h"
#include "tests/safety/meant_leak.h"
#include "tests/scans/faulty_device.h"
#include "tests/scans/whole_scan.h"

// What Windows enforces in the built DLL: calls through pointers and the value that guards the
// stack.

using namespace pmddb832;
using namespace pmddb832::tests;

namespace {

constexpr std::array kScanners{"extended", "extended:RV7000H+pages=2", "standard",
                               "standard:QM5500+pages=2"};

constexpr std::size_t kEntries = 14;  // of a still-image device
constexpr std::size_t kRawWriteData = 13;
using Entries = std::array<std::uintptr_t, kEntries>;

// Puts a table of the test in the place of a device's functions.
class DeviceWithOtherEntries {
 public:
  explicit DeviceWithOtherEntries(FaultyDevice& device)
      : place_(*reinterpret_cast<std::uintptr_t**>(&device)), former_(place_) {
    std::copy_n(former_, kEntries, entries.begin());
    place_ = entries.data();
  }
  ~DeviceWithOtherEntries() { place_ = former_; }
  DeviceWithOtherEntries(const DeviceWithOtherEntries&) = delete;
  DeviceWithOtherEntries& operator=(const DeviceWithOtherEntries&) = delete;

  Entries entries{};

 private:
  std::uintptr_t*& place_;
  std::uintptr_t* const former_;
};

std::uintptr_t AddressOfExport(const char* name) {
  return reinterpret_cast<std::uintptr_t>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("Pmddb832.dll"), name)));
}

// Every export of a session with two pages, of which the second has another pixel type.
void RunSession(WholeScan& host) {
  REQUIRE(host.Open());
  for (const std::uint32_t pixelType : {2u, 5u}) {
    host.settings.pixelType = pixelType;
    CHECK(host.Acquire(pixelType).rows.size() == 48);
  }
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  host.module->GetScanPaperSize(0, &width, &height);
  host.module->SetFocus(0, 0);
  host.module->EnableOption(0);
  host.module->GetOptionStatus(2);
  host.module->Feed(nullptr);
  host.module->Eject(nullptr);
  host.module->AbortScan();
  host.module->Reset();
  host.module->CloseScanner();
}

}  // namespace

TEST_CASE("sessions of both families call functions of the tables only, and each call is checked") {
  for (const std::string name : kScanners) {
    CAPTURE(name);
    const auto scanner = simulator::MakeScanner(name, ColourPicture(64, 48));
    FaultyDevice device(*scanner, std::nullopt);
    WholeScan host(*scanner);
    host.settings.deviceInterface = &device;
    const WrongCalls wrong;
    const std::size_t before = GuardedCalls();
    RunSession(host);
    CHECK(wrong.targets.empty());
    CHECK(device.Transfers().size() > 40);
    CHECK(GuardedCalls() - before > device.Transfers().size());
  }
}

TEST_CASE("a call of anything but a function of the tables is caught") {
  static std::uint64_t data = 0;
  const auto scanner = simulator::MakeScanner("extended", ColourPicture(64, 48));
  FaultyDevice device(*scanner, std::nullopt);
  WholeScan host(*scanner);
  host.settings.deviceInterface = &device;
  DeviceWithOtherEntries table(device);
  for (const std::uintptr_t target :
       {AddressOfExport("PMReset") + 1, AddressOfExport("PMOpenScanner") + 0x20,
        reinterpret_cast<std::uintptr_t>(&data), std::uintptr_t{0x1000}}) {
    CAPTURE(target);
    table.entries[kRawWriteData] = target;
    const WrongCalls wrong;
    const MeantLeak commandSet;
    host.Open();
    REQUIRE(!wrong.targets.empty());
    CHECK(wrong.targets.front() == target);
  }
}

TEST_CASE("a function of the tables may be called, wherever the pointer to it lies") {
  const auto scanner = simulator::MakeScanner("extended", ColourPicture(64, 48));
  FaultyDevice device(*scanner, std::nullopt);
  WholeScan host(*scanner);
  host.settings.deviceInterface = &device;
  const DeviceWithOtherEntries table(device);
  const WrongCalls wrong;
  CHECK(host.Open());
  CHECK(wrong.targets.empty());
}

TEST_CASE("the value that guards the stack is drawn when the DLL is loaded") {
  constexpr std::uint64_t kUndrawn = 0x2B992DDFA232;
  const ModuleUnderTest module;
  CHECK(SecurityCookieOf(GetModuleHandleA("Pmddb832.dll")) != kUndrawn);
}
