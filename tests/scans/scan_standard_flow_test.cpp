#include <doctest/doctest.h>

#include "tests/safety/meant_leak.h"
#include "tests/scans/extended_scan.h"
#include "tests/scans/standard_scan.h"

// What happens around the pages of a standard scanner.

using namespace pmddb832;
using namespace pmddb832::tests;
using simulator::OptionUnit;
using simulator::StandardScannerConfig;

namespace {

using Row = std::vector<std::uint8_t>;

constexpr std::uint32_t kFeeder = 0;
constexpr std::uint32_t kTransparencyUnit = 1;
constexpr BedArea kPage{0, 0, 64, 96};
constexpr BedArea kLongPage{0, 0, 2000, 150};

StandardScannerConfig WithFeeder(std::size_t pages, std::uint8_t flags = 0) {
  StandardScannerConfig config = SmallStandardScanner(ColourPicture(64, 48));
  config.optionUnit = OptionUnit::kFeeder;
  config.identity.feederFlags = flags;
  for (std::size_t i = 0; i < pages; ++i) {
    config.feederPages.push_back(ColourPicture(64, 96));
    config.feederPages.back().samples[0] = static_cast<std::uint16_t>(0x1100 * (i + 1));
  }
  return config;
}

// 2000 grey pixels a line: 32 lines a block at most.
StandardScannerConfig WithSeveralBlocks() {
  StandardScannerConfig config = StandardScannerOf(NeutralPicture(2000, 150), 2000, 150);
  config.feederPages.push_back(NeutralPicture(2000, 150));
  return config;
}

StandardScannerConfig WithLongPage() {
  StandardScannerConfig config = WithSeveralBlocks();
  config.optionUnit = OptionUnit::kFeeder;
  return config;
}

void OpenFromOption(StandardDesk& desk) {
  desk.Open();
  desk.host.settings.scanSource = 1;
}

// Acquires the first 40 lines of the long page, and aborts.
ScannedImage AbortLongPage(StandardDesk& desk) {
  desk.host.SetArea(0, 0, 2000, 150);
  ScannedImage image;
  image.rowBytes = desk.host.SetUp(3).lineBytes;
  desk.host.AcquireBand(2000 * 40, image);
  CHECK(image.rows.size() == 40);
  desk.host.module->AbortScan();
  CHECK(desk.host.module->GetScanError() == 0);
  return image;
}

}  // namespace

TEST_CASE("two standard pages in a row come out alike") {
  StandardDesk desk(SmallStandardScanner(ColourPicture(64, 48)));
  const ScannedImage first = desk.Scan({});
  desk.CheckShows(first, desk.onBed, {});
  CHECK(desk.Scan({}).rows == first.rows);
}

TEST_CASE("a standard scanner that was closed can be opened and scanned again") {
  StandardDesk desk(SmallStandardScanner(ColourPicture(64, 48)));
  {
    const MeantLeak firstCommandSet;
    REQUIRE(desk.host.Open());
    desk.opened = true;
  }
  {
    const MeantLeak firstReceiveBuffer;
    desk.Scan({});
  }
  desk.host.module->CloseScanner();
  REQUIRE(desk.host.Open());
  desk.CheckShows(desk.Scan({}), desk.onBed, {});
}

TEST_CASE("a standard abort cancels the scan, and the next one is whole") {
  StandardDesk desk(WithSeveralBlocks(), 2);
  desk.Open();
  AbortLongPage(desk);
  desk.CheckShows(desk.Scan(kLongPage), desk.onBed, kLongPage);
}

TEST_CASE("lines that are delivered after a standard abort are white") {
  for (const char* level : {"B3", "B8"}) {
    StandardScannerConfig config = WithSeveralBlocks();
    config.identity.level = level;
    StandardDesk desk(config, 2);
    REQUIRE(desk.host.Open());
    desk.opened = true;
    ScannedImage image = AbortLongPage(desk);
    for (std::uint32_t y = 0; y < 40; ++y) {
      CHECK(image.rows[y] == ExpectedRow(desk.onBed, 2, false, 0, y, 2000));
    }
    desk.host.AcquireBand(2000 * 110, image);
    REQUIRE(image.rows.size() == 150);
    for (std::uint32_t y = 40; y < 150; ++y) CHECK(image.rows[y] == Row(2000, 0xFF));
  }
}

TEST_CASE("a standard abort in the last block needs no cancel") {
  StandardDesk desk(SmallStandardScanner(ColourPicture(64, 48)));
  desk.Open();
  ScannedImage image;
  image.rowBytes = desk.host.SetUp(5).lineBytes;
  desk.host.AcquireBand(image.rowBytes * 48, image);
  desk.host.module->AbortScan();
  desk.CheckShows(desk.Scan({}), desk.onBed, {});
}

TEST_CASE("a buffer smaller than a line cancels the standard scan") {
  StandardDesk desk(WithSeveralBlocks(), 2);
  const ScannedImage image = desk.Scan(kLongPage, 2, 1999);
  CHECK(image.status == kAcquisitionFailed);
  CHECK(image.rows.empty());
  desk.CheckShows(desk.Scan(kLongPage), desk.onBed, kLongPage);
}

TEST_CASE("each page of a standard feeder is scanned and ejected, then the feeder is empty") {
  StandardDesk desk(WithFeeder(2));
  OpenFromOption(desk);
  REQUIRE(desk.host.settings.docFeedOption == kFeeder);
  CHECK(desk.Scan(kPage).rows.at(0)[2] == 0x11);
  CHECK(desk.scanner.Ejects() == 1);
  CHECK(desk.Scan(kPage).rows.at(0)[2] == 0x22);
  CHECK(desk.scanner.Ejects() == 2);
  CHECK(desk.host.module->GetOptionStatus(kFeeder) == 13);
  CHECK(desk.Scan(kPage).status == kAcquisitionFailed);
}

TEST_CASE("a variant feeder keeps the page where the host asks for it, else ejects it") {
  for (const std::uint32_t keeps : {0u, 1u}) {
    StandardDesk desk(WithFeeder(2, 0x20));
    OpenFromOption(desk);
    desk.host.settings.keepPaper = keeps;
    CHECK(desk.Scan(kPage).rows.size() == 96);
    CHECK(desk.scanner.Ejects() == 1 - keeps);
    CHECK(desk.Scan(kPage).rows.at(0)[2] == 0x22);
  }
}

TEST_CASE("a feeder without variants ejects whatever the host asks for") {
  StandardDesk desk(WithFeeder(1));
  OpenFromOption(desk);
  desk.host.settings.keepPaper = 1;
  CHECK(desk.Scan(kPage).rows.size() == 96);
  CHECK(desk.scanner.Ejects() == 1);
}

TEST_CASE("level A5 ejects at the end of a scan from the bed too") {
  StandardDesk desk(SmallStandardScanner(ColourPicture(64, 48), "A5"));
  desk.CheckShows(desk.Scan({}), desk.onBed, {});
  CHECK(desk.scanner.Ejects() == 1);
}

TEST_CASE("a standard scan from the bed leaves the paper in the feeder") {
  StandardDesk desk(WithFeeder(1));
  desk.CheckShows(desk.Scan({}), desk.onBed, {});
  CHECK(desk.scanner.Ejects() == 0);
  CHECK(desk.host.module->GetOptionStatus(kFeeder) == 0);
}

TEST_CASE("a standard abort on the feeder ejects the page") {
  StandardDesk desk(WithLongPage(), 2);
  OpenFromOption(desk);
  AbortLongPage(desk);
  CHECK(desk.scanner.Ejects() == 1);
  CHECK(desk.host.module->GetOptionStatus(kFeeder) == 13);
}

TEST_CASE("the standard transparency unit is scanned within its own area") {
  constexpr BedArea kWhole{0, 0, 40, 30};
  StandardScannerConfig config = SmallStandardScanner(ColourPicture(64, 48));
  config.optionUnit = OptionUnit::kTransparencyUnit;
  StandardDesk desk(config);
  OpenFromOption(desk);
  REQUIRE(desk.host.settings.docFeedOption == kTransparencyUnit);
  CHECK(desk.host.settings.optionWidth == 6);
  desk.CheckShows(desk.Scan(kWhole), desk.onBed, kWhole);
  const ScannedImage beyond = desk.Scan({20, 0, 30, 1});  // 16 of the 20 pixels
  const Row last = ExpectedRow(desk.onBed, 5, true, 35, 0, 1);
  CHECK(Row(beyond.rows.at(0).begin() + 87, beyond.rows.at(0).begin() + 90) == last);
}

TEST_CASE("a transparency unit with a fault keeps the standard scan from starting") {
  StandardScannerConfig config = SmallStandardScanner(ColourPicture(64, 48));
  config.optionUnit = OptionUnit::kTransparencyUnit;
  config.defects.transparencyUnitError = true;
  StandardDesk desk(config);
  OpenFromOption(desk);
  CHECK(desk.Scan({0, 0, 40, 30}).error == 15);
}

TEST_CASE("an open cover keeps the standard scan from starting") {
  StandardScannerConfig config = WithFeeder(1);
  config.defects.coverOpen = true;
  StandardDesk desk(config);
  OpenFromOption(desk);
  CHECK(desk.Scan(kPage).error == 14);
}

TEST_CASE("a standard scanner that warms up is reported, and scans when the host tries again") {
  StandardScannerConfig config = SmallStandardScanner(ColourPicture(64, 48));
  config.defects.warmUpPolls = 3;  // one status read is that of the opening
  StandardDesk desk(config);
  CHECK(desk.Scan({}).error == 43);
  CHECK(desk.Scan({}).error == 43);
  desk.CheckShows(desk.Scan({}), desk.onBed, {});
}

TEST_CASE("a start that the standard scanner refuses once is asked for again") {
  for (const char* level : {"B3", "A5", "B8"}) {
    CAPTURE(level);
    StandardScannerConfig config = SmallStandardScanner(ColourPicture(64, 48), level);
    config.manners.refusedTransfers = 1;
    StandardDesk desk(config);
    desk.CheckShows(desk.Scan({}), desk.onBed, {});
  }
}

TEST_CASE("a start that the standard scanner refuses twice fails") {
  for (const char* level : {"B3", "B8"}) {
    StandardScannerConfig config = SmallStandardScanner(ColourPicture(64, 48), level);
    config.manners.refusedTransfers = 2;
    StandardDesk desk(config);
    CHECK(desk.Scan({}).status == kAcquisitionFailed);
    desk.CheckShows(desk.Scan({}), desk.onBed, {});
  }
}

TEST_CASE("a jam in the standard feeder ends the page, and what came before is kept") {
  StandardScannerConfig config = WithLongPage();
  config.defects.jamAtLine = 70;
  StandardDesk desk(config, 2);
  OpenFromOption(desk);
  const ScannedImage image = desk.Scan(kLongPage, 2, 2000 * 32);
  CHECK(image.status == kAcquisitionFailed);
  REQUIRE(image.rows.size() == 64);
  CHECK(image.rows[63] == ExpectedRow(desk.onBed, 2, false, 0, 63, 2000));
  CHECK(desk.host.module->GetOptionStatus(kFeeder) == 15);
}

TEST_CASE("a standard scanner, an extended one and a standard one again in one process") {
  StandardDesk desk(SmallStandardScanner(ColourPicture(64, 48)));
  simulator::ExtendedScanner extended(SmallExtendedScanner(NeutralPicture(64, 48)));
  WholeScan& host = desk.host;
  {
    const MeantLeak commandSetsOfTheOthers;
    desk.CheckShows(desk.Scan({}), desk.onBed, {});
    host.module->CloseScanner();
    host.settings.deviceInterface = &extended;
    REQUIRE(host.Open());
    CHECK(host.settings.scanInfoVariant == 3);
    CHECK(host.Acquire(5).rows.at(47) == ExpectedRow(NeutralPicture(64, 48), 5, true, 0, 47, 64));
    host.module->CloseScanner();
  }
  host.settings.deviceInterface = &desk.scanner;
  REQUIRE(host.Open());
  CHECK(host.settings.scanInfoVariant == 2);
  desk.CheckShows(host.Acquire(5), desk.onBed, {});
  CHECK(Violations(extended) == "");
}
