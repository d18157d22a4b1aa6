#include <doctest/doctest.h>

#include <algorithm>
#include <array>
#include <string>

#include "simulator/catalog/catalog.h"
#include "tests/pmscan/documented_codes.h"
#include "tests/safety/guarded_host.h"
#include "tests/safety/module_memory.h"
#include "tests/scans/whole_scan.h"

// Whole scans while every buffer lies beside an inaccessible page: a byte too many ends the
// program.

using namespace pmddb832;
using namespace pmddb832::tests;

namespace {

constexpr std::array kGuards{Guard::kBehind, Guard::kBefore};
constexpr std::uint32_t kMostBufferBytes = 1 << 20;
constexpr int kMostBands = 10;

struct Subject {
  const char* name;     // of the simulated scanner
  std::uint8_t source;  // ScannerSettings::scanSource
};

constexpr std::array kSubjects{Subject{"extended", 0}, Subject{"extended:RV7000H+pages=80", 1},
                               Subject{"standard", 0}, Subject{"standard:QM5500+pages=80", 1},
                               Subject{"standard:HK300", 0}};

constexpr std::array<std::uint32_t, 9> kPixelTypes{0, 1, 2, 3, 4, 5, 6, 7, 8};

bool IsExtended(const Subject& subject) {
  return std::string_view(subject.name).starts_with("extended");
}

const simulator::Picture& OnBed() {
  static const simulator::Picture picture = ColourPicture(240, 20);
  return picture;
}

struct Desk {
  Desk(const Subject& subject, Guard guard)
      : scanner(simulator::MakeScanner(subject.name, OnBed())), host(*scanner, guard) {}

  std::unique_ptr<simulator::Scanner> scanner;
  GuardedHost host;
};

// Lines delivered in buffers of `rows` announced lines and `surplus` bytes.
std::uint32_t ScanLines(GuardedHost& host, std::uint32_t outputFormat, std::uint32_t rows,
                        std::uint32_t surplus) {
  const AcquisitionSetup setup = host.SetUp(outputFormat);
  REQUIRE(setup.status == kAcquisitionGoOn);
  std::uint32_t lines = 0;
  for (AcquisitionBand band{}; band.done == 0; lines += band.lines) {
    band = host.Acquire(setup.lineBytes * rows + surplus);
    REQUIRE(band.status == kAcquisitionGoOn);
  }
  return lines;
}

// A scan of everything that the settings say, whatever becomes of it; `meddle` is called at each of
// its four stages: before the open, the set-up, the first band and the second.
template <class Meddle>
void ScanAsFarAsItGoes(GuardedHost& host, const Subject& subject, Meddle meddle) {
  meddle(0);
  host.Open();
  host.Settings().scanSource = subject.source;
  meddle(1);
  const AcquisitionSetup setup = host.SetUp(5);
  meddle(2);
  for (int band = 0; band < kMostBands; ++band) {
    if (host.Acquire(std::min(setup.lineBytes, kMostBufferBytes / 2) * 2).done != 0) break;
    if (band == 0) meddle(3);
  }
  host->AbortScan();
  CHECK(IsDocumented(host->GetScanError()));
  host.PaperSize(subject.source);
  host->CloseScanner();
}

void CheckTypes(const Subject& subject, Guard guard, std::uint32_t width) {
  CAPTURE(subject.name);
  CAPTURE(width);
  Desk desk(subject, guard);
  ScannerSettings& settings = desk.host.Settings();
  REQUIRE(desk.host.Open());
  settings.scanSource = subject.source;
  settings.areaWidthPx = width;
  for (const std::uint32_t pixelType : kPixelTypes) {
    if (IsExtended(subject) && (pixelType == 1 || pixelType == 3 || pixelType == 4)) continue;
    CAPTURE(pixelType);
    settings.pixelType = pixelType;
    for (const std::uint32_t flags : {0u, 1u, 2u, 3u}) {
      CAPTURE(flags);
      settings.mirrorImage = flags & 1;
      settings.previewMode = flags & 2;
      CHECK(ScanLines(desk.host, pixelType, 1, 0) == GuardedHost::kHeight);
      CHECK(ScanLines(desk.host, 1, 3, 1) == GuardedHost::kHeight);
    }
  }
}

// A byte of every value into each field in turn, at each stage of a scan.
void CheckHostileRecord(const Subject& subject, Guard guard, std::uint8_t value) {
  for (const SettingsField& field : kScannerSettingsFields) {
    // The one pointer that must be true.
    if (field.name == "deviceInterface" || field.name.starts_with("reserved")) continue;
    for (int stage = 0; stage < 4; ++stage) {
      CAPTURE(subject.name);
      CAPTURE(std::string(field.name));
      CAPTURE(stage);
      Desk desk(subject, guard);
      ScanAsFarAsItGoes(desk.host, subject, [&](int reached) {
        if (reached != stage) return;
        const auto bytes = desk.host.Record().subspan(field.offset, field.width);
        std::fill(bytes.begin(), bytes.end(), value);
      });
    }
  }
}

}  // namespace

TEST_CASE("a settings record that ends with its page is 1872 bytes long") {
  const GuardedMemory record(kScannerSettingsSize, Guard::kBehind);
  CHECK(reinterpret_cast<std::uintptr_t>(record.Bytes().data()) % 4096 == 4096 - 1872);
}

TEST_CASE("scans of every type and of odd widths stay inside all buffers") {
  const std::size_t blocksBefore = MemoryOfModule().blocks;
  for (const Subject& subject : kSubjects) {
    for (const Guard guard : kGuards) {
      for (const std::uint32_t width : {9u, 16u, 33u, 216u, 217u}) {
        CheckTypes(subject, guard, width);
      }
    }
  }
  CHECK(MemoryOfModule().blocks == blocksBefore);
}

TEST_CASE("buffers of any size, the smallest ones too, are not left") {
  for (const Subject& subject : kSubjects) {
    for (const Guard guard : kGuards) {
      CAPTURE(subject.name);
      Desk desk(subject, guard);
      REQUIRE(desk.host.Open());
      desk.host.Settings().scanSource = subject.source;
      for (const std::uint32_t bytes :
           {0u, 1u, 650u, 651u, 652u, 653u, 1303u, 4563u, 4564u, 4565u}) {
        CAPTURE(bytes);
        const AcquisitionSetup setup = desk.host.SetUp(5);
        REQUIRE(setup.lineBytes == 652);
        const AcquisitionBand band = desk.host.Acquire(bytes);
        CHECK(band.lines == bytes / 652);
        CHECK(band.status == (bytes < 652 ? kAcquisitionFailed : kAcquisitionGoOn));
        desk.host->AbortScan();
      }
    }
  }
}

TEST_CASE("a record with hostile values stays inside all buffers") {
  const std::size_t blocksBefore = MemoryOfModule().blocks;
  for (const Subject& subject : kSubjects) {
    for (const int value : {0x00, 0x7F, 0xFF}) {
      CheckHostileRecord(subject, Guard::kBehind, static_cast<std::uint8_t>(value));
    }
    CheckHostileRecord(subject, Guard::kBefore, 0xFF);
  }
  CHECK(MemoryOfModule().blocks == blocksBefore);
}

TEST_CASE("scanners that announce blocks and replies of other sizes stay inside all buffers") {
  const std::size_t blocksBefore = MemoryOfModule().blocks;
  for (const char* defect :
       {"announced-block-bytes=65279", "announced-block-bytes=65280",
        "announced-block-bytes=4000000000", "announced-last-block-bytes=1",
        "announced-last-block-bytes=65279", "announced-lines=1", "announced-lines=65535",
        "announced-line-bytes=1", "announced-line-bytes=65535", "block-longer-by=1000",
        "last-block-shorter-by=500", "probe-reply-bytes=1", "probe-reply-bytes=32767",
        "last-block-unmarked"}) {
    for (const Subject& subject : kSubjects) {
      for (const Guard guard : kGuards) {
        const std::string name = std::string(subject.name) + "+" + defect;
        CAPTURE(name);
        Desk desk({name.c_str(), subject.source}, guard);
        ScanAsFarAsItGoes(desk.host, subject, [](int) {});
      }
    }
  }
  CHECK(MemoryOfModule().blocks == blocksBefore);
}
