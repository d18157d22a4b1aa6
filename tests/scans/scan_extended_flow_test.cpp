#include <doctest/doctest.h>

#include "tests/safety/meant_leak.h"
#include "tests/scans/extended_scan.h"

using namespace pmddb832;
using namespace pmddb832::tests;
using simulator::ExtendedScannerConfig;
using simulator::OptionUnit;

namespace {

constexpr std::uint32_t kFeeder = 0;
constexpr std::uint32_t kTransparencyUnit = 1;

ExtendedScannerConfig WithFeeder(std::size_t pages) {
  ExtendedScannerConfig config = SmallExtendedScanner(ColourPicture(64, 48));
  config.optionUnit = OptionUnit::kFeeder;
  for (std::size_t i = 0; i < pages; ++i) {
    config.feederPages.push_back(ColourPicture(64, 96));
    config.feederPages.back().samples[0] = static_cast<std::uint16_t>(0x1100 * (i + 1));
  }
  return config;
}

// 2000 grey pixels a line: 32 lines a block.
ExtendedScannerConfig WithSeveralBlocks() {
  ExtendedScannerConfig config = SmallExtendedScanner(NeutralPicture(2000, 150));
  config.identity.flatbed = {2000, 150};
  config.identity.feeder = {2000, 150};
  return config;
}

void SetSeveralBlocks(WholeScan& host) {
  host.settings.pixelType = 2;
  host.SetArea(0, 0, 2000, 150);
}

}  // namespace

TEST_CASE("two pages in a row come out alike") {
  ExtendedDesk desk(SmallExtendedScanner(ColourPicture(64, 48)));
  desk.Open();
  const ScannedImage first = desk.host.Acquire(5);
  const ScannedImage second = desk.host.Acquire(5);
  REQUIRE(first.rows.size() == 48);
  CHECK(first.rows == second.rows);
}

TEST_CASE("a scanner that was closed can be opened and scanned again") {
  ExtendedDesk desk(SmallExtendedScanner(ColourPicture(64, 48)));
  {
    const MeantLeak firstCommandSet;
    desk.Open();
  }
  const ScannedImage first = desk.host.Acquire(5);
  desk.host.module->CloseScanner();
  desk.Open();
  CHECK(desk.host.Acquire(5).rows == first.rows);
}

TEST_CASE("an abort in the middle cancels the scan, and the next one is whole") {
  ExtendedDesk desk(WithSeveralBlocks());
  SetSeveralBlocks(desk.host);
  desk.Open();
  ScannedImage image;
  image.rowBytes = desk.host.SetUp(2).lineBytes;
  desk.host.AcquireBand(2000 * 40, image);
  REQUIRE(image.rows.size() == 40);
  desk.host.module->AbortScan();
  CHECK(desk.host.module->GetScanError() == 0);
  CHECK(desk.host.Acquire(2).rows.size() == 150);
}

TEST_CASE("each page of the feeder is scanned and ejected, then the feeder is empty") {
  ExtendedDesk desk(WithFeeder(2));
  desk.Open();
  REQUIRE(desk.host.settings.docFeedOption == kFeeder);
  desk.host.settings.scanSource = 1;
  desk.host.SetArea(0, 0, 64, 96);
  const ScannedImage first = desk.host.Acquire(5);
  const ScannedImage second = desk.host.Acquire(5);
  REQUIRE(first.rows.size() == 96);
  REQUIRE(second.rows.size() == 96);
  CHECK(first.rows[0][2] == 0x11);
  CHECK(second.rows[0][2] == 0x22);
  const ScannedImage third = desk.host.Acquire(5);
  CHECK(third.status == kAcquisitionFailed);
  CHECK(third.error == 13);
}

TEST_CASE("an abort on the feeder ejects the page") {
  ExtendedScannerConfig config = WithSeveralBlocks();
  config.optionUnit = OptionUnit::kFeeder;
  config.feederPages.push_back(NeutralPicture(2000, 150));
  ExtendedDesk desk(std::move(config));
  desk.Open();
  SetSeveralBlocks(desk.host);
  desk.host.settings.scanSource = 1;
  ScannedImage image;
  image.rowBytes = desk.host.SetUp(2).lineBytes;
  desk.host.AcquireBand(2000 * 40, image);
  desk.host.module->AbortScan();
  CHECK(desk.host.module->GetScanError() == 0);
  CHECK(desk.host.module->GetOptionStatus(kFeeder) == 13);
}

TEST_CASE("the transparency unit is scanned within its own area") {
  ExtendedScannerConfig config = SmallExtendedScanner(ColourPicture(40, 30));
  config.optionUnit = OptionUnit::kTransparencyUnit;
  ExtendedDesk desk(config);
  desk.Open();
  REQUIRE(desk.host.settings.docFeedOption == kTransparencyUnit);
  REQUIRE(desk.host.module->EnableOption(1) == 1);
  desk.host.settings.scanSource = 1;
  desk.host.SetArea(0, 0, 40, 30);
  const ScannedImage image = desk.host.Acquire(5);
  REQUIRE(image.rows.size() == 30);
  CHECK(image.rows[29] == ExpectedRow(config.onBed, 5, true, 0, 29, 40));
}

TEST_CASE("a scanner that warms up is reported and scans when the host tries again") {
  ExtendedScannerConfig config = SmallExtendedScanner(ColourPicture(64, 48));
  config.defects.warmUpPolls = 3;  // one status read is that of the opening
  ExtendedDesk desk(std::move(config));
  desk.Open();
  CHECK(desk.host.Acquire(5).error == 43);
  CHECK(desk.host.Acquire(5).error == 43);
  CHECK(desk.host.Acquire(5).rows.size() == 48);
}

TEST_CASE("a transfer that the scanner refuses once is asked for again") {
  ExtendedScannerConfig config = SmallExtendedScanner(ColourPicture(64, 48));
  config.manners.refusedTransfers = 1;
  ExtendedDesk desk(std::move(config));
  desk.Open();
  CHECK(desk.host.Acquire(5).rows.size() == 48);
}

TEST_CASE("a jam in the feeder ends the page with its code, and what came before is kept") {
  ExtendedScannerConfig config = WithSeveralBlocks();
  config.optionUnit = OptionUnit::kFeeder;
  config.feederPages.push_back(NeutralPicture(2000, 150));
  config.defects.jamAtLine = 70;
  ExtendedDesk desk(std::move(config));
  desk.Open();
  SetSeveralBlocks(desk.host);
  desk.host.settings.scanSource = 1;
  const ScannedImage image = desk.host.Acquire(2, 2000 * 32);
  CHECK(image.status == kAcquisitionFailed);
  CHECK(image.error == 15);
  CHECK(image.rows.size() == 64);
}
