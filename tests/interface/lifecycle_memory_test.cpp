#include <doctest/doctest.h>

#include "extended/ext_scan_cmd.h"
#include "tests/interface/module_fixture.h"
#include "tests/interface/open_conversation.h"
#include "tests/safety/failing_allocation.h"

namespace pmddb832::tests {
namespace {

struct Scarce : ModuleFixture {
  std::uint32_t OpenWithMemoryFor(std::size_t allocations) {
    const AllocationLimit limit(allocations);
    return PMOpenScanner(&settings);
  }

  std::uint32_t OpenWithout(std::size_t allocation) {
    const RefusedAllocation refused(allocation);
    return PMOpenScanner(&settings);
  }

  std::uint32_t OpenExtended() {
    ScriptExtendedOpen(device);
    return PMOpenScanner(&settings);
  }

  bool NothingIsLeft() const { return currentChannel == nullptr && currentCommandSet == nullptr; }
};

}  // namespace

TEST_CASE_FIXTURE(Scarce, "no memory for the channel: the open fails without a transfer") {
  CHECK(OpenWithMemoryFor(0) == 0);
  CHECK(NothingIsLeft());
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(Scarce, "no memory for the probe: the open fails with code 8, told once") {
  CHECK(OpenWithMemoryFor(1) == 0);
  CHECK(NothingIsLeft());
  CHECK(PMGetScanError() == 8);
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(Scarce, "a probe that failed for memory is not told while a set is current") {
  REQUIRE(OpenExtended() == 1);
  const GeneralCmd* const first = currentCommandSet;
  CHECK(OpenWithMemoryFor(1) == 0);
  CHECK(currentCommandSet == first);
  CHECK(currentChannel == nullptr);
  CHECK(PMGetScanError() == 0);
  CHECK(initialisationError == 8);
}

TEST_CASE_FIXTURE(Scarce, "a later probe clears the code of an earlier one") {
  CHECK(OpenWithMemoryFor(1) == 0);
  CHECK(initialisationError == 8);
  CHECK(OpenExtended() == 1);
  CHECK(initialisationError == 0);
}

TEST_CASE_FIXTURE(Scarce, "no memory for the extended set or its work areas: no code, no rest") {
  // Behind channel and probe: the set, its transport and its four work areas.
  for (std::size_t allocations = 2; allocations < 8; ++allocations) {
    CAPTURE(allocations);
    ScriptProbe(device, kAnswersExtended);
    CHECK(OpenWithMemoryFor(allocations) == 0);
    CHECK(NothingIsLeft());
    CHECK(PMGetScanError() == 0);
  }
  CHECK(OpenExtended() == 1);
}

TEST_CASE_FIXTURE(
    Scarce, "no memory for an open within the probe, nor for a set behind it: neither opens") {
  device.Expect({0x1B, 0x49}).Reply({0x02, kAnswersExtended, 0x07, 0x00});
  device.duringReadOf = 4;
  device.duringRead = [this] { CHECK(PMOpenScanner(&settings) == 0); };
  CHECK(OpenWithMemoryFor(2) == 0);
  CHECK(NothingIsLeft());
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(Scarce, "an extended set without one of its work areas is none") {
  for (std::size_t allocation = 2; allocation < 8; ++allocation) {
    CAPTURE(allocation);
    ScriptProbe(device, kAnswersExtended);
    CHECK(OpenWithout(allocation) == 0);  // sends nothing behind the probe
    CHECK(NothingIsLeft());
    CHECK(PMGetScanError() == 0);
  }
}

TEST_CASE_FIXTURE(Scarce, "a standard set without its transport is none") {
  for (std::size_t allocation = 2; allocation < 4; ++allocation) {
    CAPTURE(allocation);
    ScriptProbe(device, kStandardOnly);
    CHECK(OpenWithout(allocation) == 0);
    CHECK(NothingIsLeft());
  }
}

TEST_CASE_FIXTURE(Scarce, "without the channel or the probe alone nothing is sent") {
  CHECK(OpenWithout(0) == 0);
  CHECK(PMGetScanError() == 0);
  CHECK(OpenWithout(1) == 0);
  CHECK(PMGetScanError() == 8);
  CHECK(NothingIsLeft());
}

TEST_CASE_FIXTURE(Scarce, "no memory for the standard set or its transport: no code, no rest") {
  for (std::size_t allocations = 2; allocations < 4; ++allocations) {
    CAPTURE(allocations);
    ScriptProbe(device, kStandardOnly);
    CHECK(OpenWithMemoryFor(allocations) == 0);
    CHECK(NothingIsLeft());
    CHECK(PMGetScanError() == 0);
  }
}

TEST_CASE_FIXTURE(Scarce, "a set that could not be made leaves none, and not the earlier one") {
  REQUIRE(OpenExtended() == 1);
  auto* const first = static_cast<ExtScanCmd*>(currentCommandSet);
  ScriptProbe(device, kStandardOnly);
  CHECK(OpenWithMemoryFor(2) == 0);
  CHECK(NothingIsLeft());
  delete first;
}

}  // namespace pmddb832::tests
