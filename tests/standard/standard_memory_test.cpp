#include "tests/safety/failing_allocation.h"
#include "tests/standard/standard_fixture.h"

// One refused allocation among granted ones.

namespace pmddb832::tests::standard {
namespace {

TEST_CASE(
    "standard: an identification without one of its lists ends, though there is memory again") {
  // channel, probe, command set and its transport come first
  for (const std::size_t allocation : {4u, 5u}) {
    CAPTURE(allocation);
    StandardScanner scanner;
    scanner.AnswerProbe();
    scanner.AnswerReset();
    scanner.Answer('?', {Product()});
    scanner.Answer('I', {Identity()});
    const RefusedAllocation refused(allocation);
    CHECK(PMOpenScanner(&scanner.settings) == 0);
    CHECK(PMGetScanError() == 1);
  }
}

TEST_CASE_FIXTURE(OpenB4, "standard: a scan without a receive buffer is not started") {
  InitAcquire(1);
  system.heapAllocationsLeft = 0;
  CheckAcquireFails(64, 0);
  CheckAcquireFails(65280, 0);
  CHECK(Acquire(64, 3).record.status == kFailed);
  CHECK(system.heapBlocks == 0);
}

}  // namespace
}  // namespace pmddb832::tests::standard
