#include <doctest/doctest.h>

#include <array>

#include "simulator/catalog/catalog.h"
#include "tests/safety/meant_leak.h"
#include "tests/safety/module_memory.h"
#include "tests/scans/whole_scan.h"

using namespace pmddb832;
using namespace pmddb832::tests;

namespace {

constexpr int kRounds = 1000;

struct Subject {
  const char* name;       // of the simulated scanner
  std::size_t formerSet;  // blocks of a command set that was closed: it and its parts
};

constexpr std::array kSubjects{Subject{"extended", 6}, Subject{"standard", 4}};

void OpenScanClose(WholeScan& host) {
  REQUIRE(host.Open());
  host.SetArea(0, 0, 8, 3);
  REQUIRE(host.Acquire(5, 24 * 2).rows.size() == 3);
  host.module->CloseScanner();
}

}  // namespace

TEST_CASE("a thousand loads, opens, scans, closes and unloads leave nothing behind") {
  for (const Subject& subject : kSubjects) {
    CAPTURE(subject.name);
    const auto scanner = simulator::MakeScanner(subject.name, ColourPicture(8, 8));
    const std::size_t before = MemoryOfModule().blocks;
    for (int round = 0; round < kRounds; ++round) {
      {
        WholeScan host(*scanner);
        WatchModule();
        OpenScanClose(host);
      }
      REQUIRE(MemoryOfModule().blocks == before);
    }
  }
}

TEST_CASE("an unload in the middle of a scan leaves nothing behind") {
  for (const Subject& subject : kSubjects) {
    CAPTURE(subject.name);
    const auto scanner = simulator::MakeScanner(subject.name, ColourPicture(8, 8));
    const std::size_t before = MemoryOfModule().blocks;
    {
      WholeScan host(*scanner);
      WatchModule();
      REQUIRE(host.Open());
      host.SetArea(0, 0, 8, 3);
      ScannedImage image;
      image.rowBytes = host.SetUp(5).lineBytes;
      host.AcquireBand(24, image);
      CHECK(MemoryOfModule().blocks > before);
    }
    CHECK(MemoryOfModule().blocks == before);
  }
}

// Hosts rely on it: a further open leaves the former command set where it is.
TEST_CASE("a thousand opens, scans and closes in one load leave the former command sets only") {
  for (const Subject& subject : kSubjects) {
    CAPTURE(subject.name);
    const auto scanner = simulator::MakeScanner(subject.name, ColourPicture(8, 8));
    const std::size_t before = MemoryOfModule().blocks;
    {
      WholeScan host(*scanner);
      WatchModule();
      const MeantLeak formerCommandSets;
      for (int round = 0; round < kRounds; ++round) OpenScanClose(host);
    }
    CHECK(MemoryOfModule().blocks - before == (kRounds - 1) * subject.formerSet);
  }
}
