#include <doctest/doctest.h>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "simulator/catalog/catalog.h"
#include "tests/pmscan/documented_codes.h"
#include "tests/safety/meant_leak.h"
#include "tests/safety/module_memory.h"
#include "tests/scans/faulty_device.h"
#include "tests/scans/whole_scan.h"

using namespace pmddb832;
using namespace pmddb832::tests;

namespace {

// A scan that is repeated with every fault at every place.
struct Subject {
  const char* name;     // of the simulated scanner
  std::uint8_t source;  // ScannerSettings::scanSource
};

constexpr std::array kSubjects{Subject{"extended", 0}, Subject{"extended:RV7000H+pages=2", 1},
                               Subject{"standard", 0}, Subject{"standard:QM5500+pages=2", 1},
                               Subject{"standard:HK300", 0}};

// Pixels at 300 dpi.
struct Area {
  std::uint32_t width;
  std::uint32_t height;
  std::uint32_t bandLines;
};
constexpr Area kPage{1100, 20, 7};  // in several blocks of either family
constexpr Area kStamp{20, 5, 3};    // in replies of which every length can be tried

struct Outcome {
  bool opened = false;
  ScannedImage image;
  std::vector<std::uint32_t> transfers;
};

const simulator::Picture& OnBed() {
  static const simulator::Picture picture = ColourPicture(100, 20);
  return picture;
}

// Opens a fresh scanner through the host's module, scans the area of it with tables of its own, and
// closes it.
Outcome Scan(WholeScan& host, const Subject& subject, const Area& area,
             std::optional<Fault> fault) {
  const auto scanner = simulator::MakeScanner(subject.name, OnBed());
  FaultyDevice device(*scanner, fault);
  host.settings.deviceInterface = &device;
  host.settings.scanSource = 0;
  Outcome outcome;
  {
    const MeantLeak formerCommandSet;
    outcome.opened = host.Open();
  }
  host.settings.scanSource = subject.source;
  host.settings.resolution = 300;
  host.settings.customGamma = host.settings.colorCorrection = 1;
  host.SetArea(0, 0, area.width, area.height);
  outcome.image = host.Acquire(5, 3 * area.width * area.bandLines);
  host.module->AbortScan();
  host.module->CloseScanner();
  host.settings.deviceInterface = nullptr;
  outcome.transfers = device.Transfers();
  return outcome;
}

// A host that has just loaded the module; its scans bring their own scanners.
struct Desk {
  explicit Desk(const Subject& subject)
      : unused(simulator::MakeScanner(subject.name, OnBed())), host(*unused) {
    WatchModule();
  }

  std::unique_ptr<simulator::Scanner> unused;
  WholeScan host;
};

// The same in a module of its own, which is unloaded behind the scan.
Outcome LoadAndScan(const Subject& subject, const Area& area, std::optional<Fault> fault) {
  Desk desk(subject);
  return Scan(desk.host, subject, area, fault);
}

using Check = std::function<void(const Subject&, const Outcome&, const Fault&)>;

// The fault in each transfer of each subject's scan in turn; one that delivers only a part of a
// reply, with each length of that part.
void ForEachPlace(FaultKind kind, const Area& area, const Check& check) {
  const bool cuts = kind == FaultKind::kCutShort || kind == FaultKind::kTimesOut;
  for (const Subject& subject : kSubjects) {
    CAPTURE(subject.name);
    const Outcome sound = LoadAndScan(subject, area, std::nullopt);
    REQUIRE(sound.opened);
    REQUIRE(sound.image.rows.size() == area.height);
    for (std::size_t transfer = 0; transfer < sound.transfers.size(); ++transfer) {
      CAPTURE(transfer);
      const std::uint32_t lengths = cuts ? sound.transfers[transfer] : 1;
      for (std::uint32_t length = 0; length < lengths; ++length) {
        CAPTURE(length);
        check(subject, sound, {kind, transfer, length});
      }
    }
  }
}

// The faulty scan ends with a documented code, and a sound one behind it is whole.
void CheckHarmless(FaultKind kind, const Area& area) {
  std::unique_ptr<Desk> desk;
  const char* loadedFor = nullptr;
  ForEachPlace(kind, area, [&](const Subject& subject, const Outcome& sound, const Fault& fault) {
    if (loadedFor != subject.name) {
      desk.reset();
      desk = std::make_unique<Desk>(subject);
      loadedFor = subject.name;
    }
    const Outcome faulty = Scan(desk->host, subject, area, fault);
    CHECK(IsDocumented(faulty.image.error));
    CHECK(faulty.transfers.size() < 2 * sound.transfers.size() + 20);
    CHECK(Scan(desk->host, subject, area, std::nullopt).image.rows == sound.image.rows);
  });
}

void CheckLeavesNothing(FaultKind kind) {
  ForEachPlace(kind, kPage,
               [](const Subject& subject, const Outcome& /*sound*/, const Fault& fault) {
                 const std::size_t before = MemoryOfModule().blocks;
                 LoadAndScan(subject, kPage, fault);
                 CHECK(MemoryOfModule().blocks == before);
               });
}

}  // namespace

TEST_CASE("a transfer that fails, wherever it does, harms neither this scan nor the next") {
  CheckHarmless(FaultKind::kFails, kPage);
}

TEST_CASE("a device that is gone from any transfer on harms neither this scan nor the next") {
  CheckHarmless(FaultKind::kGone, kPage);
}

TEST_CASE("a NAK in the place of any ACK harms neither this scan nor the next") {
  CheckHarmless(FaultKind::kNak, kPage);
}

TEST_CASE("a wrong first byte of any reply harms neither this scan nor the next") {
  CheckHarmless(FaultKind::kWrongFirstByte, kPage);
}

TEST_CASE("a reply cut to any shorter length harms neither this scan nor the next") {
  CheckHarmless(FaultKind::kCutShort, kStamp);
}

TEST_CASE("a reply that stops at any length with a failure harms neither this scan nor the next") {
  CheckHarmless(FaultKind::kTimesOut, kStamp);
}

TEST_CASE("a scan with a fault in any transfer leaves nothing allocated behind its unload") {
  CheckLeavesNothing(FaultKind::kFails);
  CheckLeavesNothing(FaultKind::kGone);
  CheckLeavesNothing(FaultKind::kNak);
  CheckLeavesNothing(FaultKind::kWrongFirstByte);
}
