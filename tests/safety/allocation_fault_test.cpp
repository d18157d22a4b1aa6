#include <doctest/doctest.h>

#include <array>

#include "simulator/catalog/catalog.h"
#include "tests/pmscan/documented_codes.h"
#include "tests/safety/meant_leak.h"
#include "tests/safety/module_memory.h"
#include "tests/scans/whole_scan.h"

// Whole scans in which each request of the module for memory is refused in turn.

using namespace pmddb832;
using namespace pmddb832::tests;

namespace {

constexpr std::uint32_t kLines = 40;

struct Subject {
  const char* name;     // of the simulated scanner
  std::uint8_t source;  // ScannerSettings::scanSource
};

constexpr std::array kSubjects{Subject{"extended", 0}, Subject{"extended:RV7000H+pages=99", 1},
                               Subject{"standard", 0}, Subject{"standard:QM5500+pages=99", 1},
                               Subject{"standard:HK300", 0}};

// Opens the scanner, scans two pages of it in bands of 7 lines, and closes it.
ScannedImage ScanTwice(WholeScan& host, const Subject& subject) {
  host.settings.scanSource = 0;
  host.Open();
  host.settings.scanSource = subject.source;
  host.settings.customGamma = host.settings.colorCorrection = 1;
  host.SetArea(0, 0, 64, kLines);
  host.Acquire(5, 192 * 7);
  const ScannedImage image = host.Acquire(5, 192 * 7);
  host.module->AbortScan();
  host.module->CloseScanner();
  return image;
}

// A host that has just loaded the module.
struct Desk {
  explicit Desk(const Subject& subject)
      : scanner(simulator::MakeScanner(subject.name, ColourPicture(64, 48))), host(*scanner) {
    WatchModule();
  }

  std::unique_ptr<simulator::Scanner> scanner;
  WholeScan host;
};

struct Sound {
  ScannedImage image;
  std::size_t requests;  // for memory
};

Sound ScanSoundly(const Subject& subject) {
  Desk desk(subject);
  const std::size_t before = MemoryOfModule().requests;
  const ScannedImage image = ScanTwice(desk.host, subject);
  return {image, MemoryOfModule().requests - before};
}

// The same while every request behind the granted ones is refused.
ScannedImage ScanWithGrants(WholeScan& host, const Subject& subject, std::size_t grants) {
  MemoryOfModule().grants = grants;
  const ScannedImage image = ScanTwice(host, subject);
  MemoryOfModule().grants.reset();
  return image;
}

// Every request of every subject's scan in turn.
template <class Check>
void RefuseEach(Check check) {
  for (const Subject& subject : kSubjects) {
    CAPTURE(subject.name);
    const Sound sound = ScanSoundly(subject);
    REQUIRE(sound.image.rows.size() == kLines);
    for (std::size_t grants = 0; grants < sound.requests; ++grants) {
      CAPTURE(grants);
      check(subject, sound, grants);
    }
  }
}

}  // namespace

TEST_CASE("each scan asks for memory for its channel, command set, tables and buffers") {
  CHECK(ScanSoundly(kSubjects[0]).requests == 11);
  CHECK(ScanSoundly(kSubjects[2]).requests == 8);
}

TEST_CASE("a scan without memory from any request on fails with a documented code") {
  RefuseEach([](const Subject& subject, const Sound& /*sound*/, std::size_t grants) {
    Desk desk(subject);
    const ScannedImage image = ScanWithGrants(desk.host, subject, grants);
    CHECK(IsDocumented(image.error));
    CHECK(image.rows.empty());
    CHECK(image.status != kAcquisitionGoOn);
  });
}

TEST_CASE("a scan without memory from any request on leaves nothing behind") {
  RefuseEach([](const Subject& subject, const Sound& /*sound*/, std::size_t grants) {
    const std::size_t before = MemoryOfModule().blocks;
    {
      Desk desk(subject);
      ScanWithGrants(desk.host, subject, grants);
    }
    CHECK(MemoryOfModule().blocks == before);
  });
}

TEST_CASE("a scan behind one without memory is clean") {
  RefuseEach([](const Subject& subject, const Sound& sound, std::size_t grants) {
    Desk desk(subject);
    {
      const MeantLeak formerCommandSet;
      ScanWithGrants(desk.host, subject, grants);
      CHECK(ScanTwice(desk.host, subject).rows == sound.image.rows);
    }
    CHECK(desk.host.module->GetScanError() == 0);
  });
}
