#include <doctest/doctest.h>

#include "simulator/extended/extended_scanner.h"
#include "simulator/faults/fault_injector.h"
#include "tests/simulator/simulator_conversation.h"

// The extended scanner's commands, one conversation each.

using namespace simulator_test;
using simulator::ExtendedScanner;
using simulator::FaultInjector;
using simulator::OptionUnit;

TEST_CASE("simulator: ESC I answers STX, the extended bit, the level and its resolutions") {
  Play(SmallFlatbed(),
       "> 1B 49 < 02 02 19 00"
       "< 42 38  52 32 00  52 48 00  52 4B 00  52 64 00  52 96 00  52 C8 00  41 90 01 90 01");
}

TEST_CASE("simulator: a scanner without extended commands clears the bit in its probe reply") {
  auto config = SmallFlatbed();
  config.manners.knowsExtendedCommands = false;
  Play(config, "> 1B 49 < 02 00");
}

TEST_CASE("simulator: ESC @ is acknowledged and forgets what was set") {
  ExtendedScanner scanner(SmallFlatbed());
  Converse(scanner, kSetUp + "+ m 01 02 03 04 05 06 07 08 09 > 1B 40 < 06");
  CHECK_FALSE(scanner.Request());
  CHECK_FALSE(scanner.ColorMatrix());
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: FS I tells level, resolutions, areas, feeder flags and product name") {
  auto config = SmallFlatbed();
  config.identity.feederFlags = 0x38;
  config.identity.productName = "SCANNER RV-5000 ";
  Play(config,
       "> 1C 49 < 42 38 00 00 64 00 00 00 32 00 00 00 C8 00 00 00 00 00 00 00"
       "C8 00 00 00 C8 00 00 00 64 00 00 00 96 00 00 00 50 00 00 00 3C 00 00 00"
       "38 00 53 43 41 4E 4E 45 52 20 52 56 2D 35 30 30 30 20"
       "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST_CASE("simulator: FS F of a healthy flatbed is sixteen zeros") {
  Play(SmallFlatbed(), "> 1C 46 < 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST_CASE("simulator: FS F tells a fitted feeder in byte 1 and a transparency unit in byte 2") {
  auto config = SmallFeeder(1);
  Play(config, "> 1C 46 < 00 80 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
  config.optionUnit = OptionUnit::kTransparencyUnit;
  Play(config, "> 1C 46 < 00 00 80 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST_CASE("simulator: ESC z takes 257 bytes with the selector R, G, B or M") {
  const std::string table = ToHex(Bytes(256, 0x80));
  PlayRefused(
      SmallFlatbed(),
      "+ z 52" + table + "+ z 47" + table + "+ z 42" + table + "+ z 4D" + table + "- z 58" + table,
      "selector 88");
}

TEST_CASE("simulator: ESC m takes nine bytes and keeps them") {
  ExtendedScanner scanner(SmallFlatbed());
  Converse(scanner, "+ m 20 00 00 00 20 00 00 00 20");
  REQUIRE(scanner.ColorMatrix());
  CHECK(scanner.ColorMatrix()->at(4) == 0x20);
}

TEST_CASE("simulator: ESC p takes a focus position, ESC q tells the one that was found") {
  ExtendedScanner scanner(SmallFlatbed());
  Converse(scanner, "+ p FF > 1B 71 < 02 00 02 00 00 48");
  CHECK(scanner.FocusPosition() == 0xFF);
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: automatic focus that finds nothing sets bit 0 of the first data byte") {
  auto config = SmallFlatbed();
  config.manners.focusFails = true;
  Play(config, "> 1B 71 < 02 00 02 00 01 48");
}

TEST_CASE("simulator: below level B8 there is no focus") {
  auto config = SmallFlatbed();
  config.identity.level = "B7";
  PlayWrongly(config, "> 1B 70 < 15", "expected a command that the scanner knows, got ESC p");
}

TEST_CASE("simulator: ESC e without an option unit takes 0 alone") {
  PlayRefused(SmallFlatbed(), "+ e 00 - e 01", "no option unit is fitted");
}

TEST_CASE("simulator: ESC e above 1 is for the feeder variant alone") {
  auto config = SmallFeeder(1);
  Play(config, "+ e 01 > 1B 65 02 < 06 15");
  config.identity.feederFlags = 0x20;
  ExtendedScanner variant(config);
  Converse(variant, "+ e 02");
  CHECK(variant.OptionValue() == 2);
}

TEST_CASE("simulator: bytes may come and go in any portions") {
  Play(SmallFlatbed(), "> 1B > 65 < 06 > 00 < 06 > 1B 49 < 02 < 02 19 * 26");
}

TEST_CASE("simulator: the rest of the device interface is not implemented") {
  constexpr auto kNotImplemented = static_cast<std::int32_t>(0x80004001);
  ExtendedScanner scanner(SmallFlatbed());
  FaultInjector cable(scanner, {});
  pmddb832::StillImageDevice* const devices[] = {&scanner, &cable};
  for (pmddb832::StillImageDevice* const device : devices) {
    CHECK(device->QueryInterface(nullptr, nullptr) == static_cast<std::int32_t>(0x80004002));
    CHECK(device->AddRef() == 1);
    CHECK(device->Release() == 1);
    CHECK(device->Initialize(nullptr, nullptr, 0, 0) == kNotImplemented);
    CHECK(device->GetCapabilities(nullptr) == kNotImplemented);
    CHECK(device->GetStatus(nullptr) == kNotImplemented);
    CHECK(device->DeviceReset() == kNotImplemented);
    CHECK(device->Diagnostic(nullptr) == kNotImplemented);
    CHECK(device->Escape(0, nullptr, 0, nullptr, 0, nullptr) == kNotImplemented);
    CHECK(device->GetLastError(nullptr) == kNotImplemented);
    CHECK(device->LockDevice(0) == kNotImplemented);
    CHECK(device->UnLockDevice() == kNotImplemented);
  }
}
