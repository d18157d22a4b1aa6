#include <doctest/doctest.h>

#include <type_traits>

#include "tests/safety/meant_leak.h"
#include "tests/scans/extended_scan.h"
#include "tests/scans/standard_scan.h"

// What happens around the pages of a scanner.

using namespace pmddb832;
using namespace pmddb832::tests;
using simulator::OptionUnit;

namespace {

using Row = std::vector<std::uint8_t>;

constexpr std::uint32_t kFeeder = 0;
constexpr std::uint32_t kTransparencyUnit = 1;
template <class Desk>
constexpr bool kIsExtended = std::is_same_v<Desk, ExtendedDesk>;

// What the last call leaves where the paper stops the page; the standard set leaves the cause to
// the status.
template <class Desk>
constexpr std::uint32_t CodeOf(std::uint32_t cause) {
  return kIsExtended<Desk> ? cause : 0;
}

constexpr BedArea kPage{0, 0, 64, 96};
constexpr BedArea kLongPage{0, 0, 2000, 150};

template <class Desk>
typename Desk::Config WithFeeder(std::size_t pages) {
  auto config = Desk::Small(ColourPicture(64, 48));
  config.optionUnit = OptionUnit::kFeeder;
  for (std::size_t i = 0; i < pages; ++i) {
    config.feederPages.push_back(ColourPicture(64, 96));
    config.feederPages.back().samples[0] = static_cast<std::uint16_t>(0x1100 * (i + 1));
  }
  return config;
}

// 2000 grey pixels a line: 32 lines a block at most.
template <class Desk>
typename Desk::Config WithSeveralBlocks() {
  return ScannerFor<Desk>(NeutralPicture(2000, 150));
}

template <class Desk>
typename Desk::Config WithLongPage() {
  auto config = WithSeveralBlocks<Desk>();
  config.optionUnit = OptionUnit::kFeeder;
  config.feederPages.push_back(config.onBed);
  return config;
}

// Acquires the first 40 lines of the long page, and aborts.
template <class Desk>
ScannedImage AbortLongPage(Desk& desk) {
  desk.host.SetArea(0, 0, 2000, 150);
  ScannedImage image;
  image.rowBytes = desk.host.SetUp(3).lineBytes;
  desk.host.AcquireBand(2000 * 40, image);
  CHECK(image.rows.size() == 40);
  desk.host.module->AbortScan();
  CHECK(desk.host.module->GetScanError() == 0);
  return image;
}

template <class Desk>
void CheckAsksAgain(typename Desk::Config config) {
  config.manners.refusedTransfers = 1;
  Desk desk(std::move(config));
  desk.CheckShows(desk.Scan({}), desk.onBed, {});
}

}  // namespace

TEST_CASE_TEMPLATE("two pages in a row come out alike", Desk, ExtendedDesk, StandardDesk) {
  Desk desk(Desk::Small(ColourPicture(64, 48)));
  const ScannedImage first = desk.Scan({});
  desk.CheckShows(first, desk.onBed, {});
  CHECK(desk.Scan({}).rows == first.rows);
}

TEST_CASE_TEMPLATE("a scanner that was closed can be opened and scanned again", Desk, ExtendedDesk,
                   StandardDesk) {
  Desk desk(Desk::Small(ColourPicture(64, 48)));
  {
    const MeantLeak firstCommandSet;
    desk.Open();
  }
  {
    const MeantLeak firstReceiveBuffer;
    desk.Scan({});
  }
  desk.host.module->CloseScanner();
  REQUIRE(desk.host.Open());
  desk.CheckShows(desk.Scan({}), desk.onBed, {});
}

TEST_CASE_TEMPLATE("an abort cancels the scan, and the next one is whole", Desk, ExtendedDesk,
                   StandardDesk) {
  Desk desk(WithSeveralBlocks<Desk>(), 2);
  desk.Open();
  AbortLongPage(desk);
  desk.CheckShows(desk.Scan(kLongPage), desk.onBed, kLongPage);
}

TEST_CASE("lines that are delivered after a standard abort are white") {
  for (const std::string_view level : {"B3", "B8"}) {
    auto config = WithSeveralBlocks<StandardDesk>();
    config.identity.level = level;
    StandardDesk desk(config, 2);
    desk.Open();
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
  StandardDesk desk(StandardDesk::Small(ColourPicture(64, 48)));
  desk.Open();
  ScannedImage image;
  image.rowBytes = desk.host.SetUp(5).lineBytes;
  desk.host.AcquireBand(image.rowBytes * 48, image);
  desk.host.module->AbortScan();
  desk.CheckShows(desk.Scan({}), desk.onBed, {});
}

TEST_CASE("a buffer smaller than a line cancels the standard scan") {
  StandardDesk desk(WithSeveralBlocks<StandardDesk>(), 2);
  const ScannedImage image = desk.Scan(kLongPage, 2, 1999);
  CHECK(image.status == kAcquisitionFailed);
  CHECK(image.rows.empty());
  desk.CheckShows(desk.Scan(kLongPage), desk.onBed, kLongPage);
}

TEST_CASE_TEMPLATE("each page of a feeder is scanned and ejected, then the feeder is empty", Desk,
                   ExtendedDesk, StandardDesk) {
  Desk desk(WithFeeder<Desk>(2));
  desk.OpenFromOption();
  REQUIRE(desk.host.settings.docFeedOption == kFeeder);
  CHECK(desk.Scan(kPage).rows.at(0)[2] == 0x11);
  CHECK(desk.scanner.Ejects() == 1);
  CHECK(desk.Scan(kPage).rows.at(0)[2] == 0x22);
  CHECK(desk.scanner.Ejects() == 2);
  CHECK(desk.host.module->GetOptionStatus(kFeeder) == 13);
  const ScannedImage third = desk.Scan(kPage);
  CHECK(third.status == kAcquisitionFailed);
  CHECK(third.error == CodeOf<Desk>(13));
}

TEST_CASE("a variant feeder keeps the page where the host asks for it, else ejects it") {
  for (const std::uint32_t keeps : {0u, 1u}) {
    CAPTURE(keeps);
    auto config = WithFeeder<StandardDesk>(2);
    config.identity.feederFlags = 0x20;
    StandardDesk desk(config);
    desk.OpenFromOption();
    desk.host.settings.keepPaper = keeps;
    CHECK(desk.Scan(kPage).rows.size() == 96);
    CHECK(desk.scanner.Ejects() == 1 - keeps);
    CHECK(desk.Scan(kPage).rows.at(0)[2] == 0x22);
  }
}

TEST_CASE("a feeder without variants ejects whatever the host asks for") {
  StandardDesk desk(WithFeeder<StandardDesk>(1));
  desk.OpenFromOption();
  desk.host.settings.keepPaper = 1;
  CHECK(desk.Scan(kPage).rows.size() == 96);
  CHECK(desk.scanner.Ejects() == 1);
}

TEST_CASE("level A5 ejects at the end of a scan from the bed too") {
  StandardDesk desk(StandardDesk::Small(ColourPicture(64, 48), "A5"));
  desk.CheckShows(desk.Scan({}), desk.onBed, {});
  CHECK(desk.scanner.Ejects() == 1);
}

TEST_CASE("a standard scan from the bed leaves the paper in the feeder") {
  StandardDesk desk(WithFeeder<StandardDesk>(1));
  desk.CheckShows(desk.Scan({}), desk.onBed, {});
  CHECK(desk.scanner.Ejects() == 0);
  CHECK(desk.host.module->GetOptionStatus(kFeeder) == 0);
}

TEST_CASE_TEMPLATE("an abort on the feeder ejects the page", Desk, ExtendedDesk, StandardDesk) {
  Desk desk(WithLongPage<Desk>(), 2);
  desk.OpenFromOption();
  AbortLongPage(desk);
  CHECK(desk.scanner.Ejects() == 1);
  CHECK(desk.host.module->GetOptionStatus(kFeeder) == 13);
}

TEST_CASE_TEMPLATE("the transparency unit is scanned within its own area", Desk, ExtendedDesk,
                   StandardDesk) {
  constexpr BedArea kWhole{0, 0, 40, 30};
  auto config = Desk::Small(ColourPicture(64, 48));
  config.optionUnit = OptionUnit::kTransparencyUnit;
  Desk desk(config);
  desk.OpenFromOption();
  REQUIRE(desk.host.settings.docFeedOption == kTransparencyUnit);
  REQUIRE(desk.host.module->EnableOption(1) == 1);
  CHECK(desk.host.settings.optionWidth == 6);
  desk.CheckShows(desk.Scan(kWhole), desk.onBed, kWhole);
  const ScannedImage beyond = desk.Scan({20, 0, 30, 1});
  // all 20 pixels, or 16 of them in groups of 8
  const std::uint32_t inside = kIsExtended<Desk> ? 20 : 16;
  const Row last = ExpectedRow(desk.onBed, 5, true, 20 + inside - 1, 0, 1);
  CHECK(Row(beyond.rows.at(0).begin() + 87, beyond.rows.at(0).begin() + 90) == last);
}

TEST_CASE("a transparency unit with a fault keeps the standard scan from starting") {
  auto config = StandardDesk::Small(ColourPicture(64, 48));
  config.optionUnit = OptionUnit::kTransparencyUnit;
  config.defects.transparencyUnitError = true;
  StandardDesk desk(config);
  desk.OpenFromOption();
  CHECK(desk.Scan({0, 0, 40, 30}).error == 15);
}

TEST_CASE("an open cover keeps the standard scan from starting") {
  auto config = WithFeeder<StandardDesk>(1);
  config.defects.coverOpen = true;
  StandardDesk desk(config);
  desk.OpenFromOption();
  CHECK(desk.Scan(kPage).error == 14);
}

TEST_CASE_TEMPLATE("a scanner that warms up is reported, and scans when the host tries again", Desk,
                   ExtendedDesk, StandardDesk) {
  auto config = Desk::Small(ColourPicture(64, 48));
  config.defects.warmUpPolls = 3;  // one status read is that of the opening
  Desk desk(config);
  CHECK(desk.Scan({}).error == 43);
  CHECK(desk.Scan({}).error == 43);
  desk.CheckShows(desk.Scan({}), desk.onBed, {});
}

TEST_CASE("a start that the scanner refuses once is asked for again") {
  CheckAsksAgain<ExtendedDesk>(ExtendedDesk::Small(ColourPicture(64, 48)));
  for (const std::string_view level : {"B3", "A5", "B8"}) {
    CAPTURE(level);
    CheckAsksAgain<StandardDesk>(StandardDesk::Small(ColourPicture(64, 48), level));
  }
}

TEST_CASE("a start that the standard scanner refuses twice fails") {
  for (const std::string_view level : {"B3", "B8"}) {
    auto config = StandardDesk::Small(ColourPicture(64, 48), level);
    config.manners.refusedTransfers = 2;
    StandardDesk desk(config);
    CHECK(desk.Scan({}).status == kAcquisitionFailed);
    desk.CheckShows(desk.Scan({}), desk.onBed, {});
  }
}

TEST_CASE_TEMPLATE("a jam in the feeder ends the page, and what came before is kept", Desk,
                   ExtendedDesk, StandardDesk) {
  auto config = WithLongPage<Desk>();
  config.defects.jamAtLine = 70;
  Desk desk(config, 2);
  desk.OpenFromOption();
  const ScannedImage image = desk.Scan(kLongPage, 2, 2000 * 32);
  CHECK(image.status == kAcquisitionFailed);
  CHECK(image.error == CodeOf<Desk>(15));
  REQUIRE(image.rows.size() == 64);
  CHECK(image.rows[63] == ExpectedRow(desk.onBed, 2, false, 0, 63, 2000));
  CHECK(desk.host.module->GetOptionStatus(kFeeder) == 15);
}

TEST_CASE("a standard scanner, an extended one and a standard one again in one process") {
  StandardDesk desk(StandardDesk::Small(ColourPicture(64, 48)));
  simulator::ExtendedScanner extended(ExtendedDesk::Small(NeutralPicture(64, 48)));
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
