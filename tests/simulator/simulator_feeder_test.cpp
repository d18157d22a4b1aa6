#include <doctest/doctest.h>

#include "simulator/device/line_format.h"
#include "simulator/extended/extended_scanner.h"
#include "tests/simulator/simulator_conversation.h"

// Pages of the document feeder, and the transparency unit.

using namespace simulator_test;
using simulator::ExtendedScanner;
using simulator::OptionUnit;

namespace {

// A scan from the option unit, and one that is refused.
const std::string kStart = kSetUpOption + "> 1C 47";
const std::string kRefused = kStart + "< 02 80 00 00 00 00 00 00 00 00 00 00 00 00";

Bytes FromOption() {
  return With(ParameterBlock(), "26: 01");
}

void CheckScanShows(const simulator::Picture& picture, ExtendedScanner& scanner,
                    const Bytes& parameterBlock) {
  const Bytes image = ScanWith(scanner, parameterBlock, 16);
  CHECK(image == simulator::ScannedArea(picture, *scanner.Request()));
}

simulator::ExtendedScannerConfig WithTransparencyUnit() {
  auto config = SmallFlatbed();
  config.optionUnit = OptionUnit::kTransparencyUnit;
  return config;
}

}  // namespace

TEST_CASE("simulator: a scan with the option on loads the next page") {
  const auto config = SmallFeeder(2);
  ExtendedScanner scanner(config);
  CheckScanShows(config.feederPages[0], scanner, FromOption());
  CheckScanShows(config.feederPages[1], scanner, FromOption());
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: a scan with the option off takes the bed, feeder or not") {
  const auto config = SmallFeeder(1);
  ExtendedScanner scanner(config);
  CheckScanShows(config.onBed, scanner, ParameterBlock());
  Converse(scanner, "> 1C 46 < 00 80 00");
}

TEST_CASE("simulator: the area of the feeder bounds a scan from it") {
  PlayRefused(SmallFeeder(1), SetUpWith("16: 65, 26: 01", "15"), "columns 0 + 101 of 100");
}

TEST_CASE("simulator: feed loads a page and is acknowledged, the same page until it was scanned") {
  const auto config = SmallFeeder(2);
  ExtendedScanner scanner(config);
  Converse(scanner, "> 19 < 06 > 19 < 06");
  CheckScanShows(config.feederPages[0], scanner, FromOption());
  Converse(scanner, "> 19 < 06");
  CheckScanShows(config.feederPages[1], scanner, FromOption());
  Converse(scanner, "> 19 < 15");
  CheckRefusal(scanner, "no page that it can load");
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: eject throws the page in the path out, and needs one") {
  Play(SmallFeeder(1), "> 0C < 15 > 19 < 06 > 0C < 06 > 0C < 15 > 1C 46 < 00 C8 00");
}

TEST_CASE("simulator: without a feeder feed and eject are answered with NAK") {
  Play(SmallFlatbed(), "> 19 < 15 > 0C < 15");
}

TEST_CASE("simulator: paper is out when no page is left to scan, the one in the path included") {
  Play(SmallFeeder(1),
       "> 1C 46 < 00 80 00 * 13 > 19 < 06 > 1C 46 < 00 80 00 * 13" + kStart +
           "< 02 00 * 12 * 64 < 00 > 06 * 64 < 00 > 06 * 32 < 00 > 1C 46 < 00 C8 00 * 13"
           "> 0C < 06 > 1C 46 < 00 C8 00");
}

TEST_CASE("simulator: a scan from the empty feeder is refused in the header") {
  PlayRefused(SmallFeeder(0), kRefused, "no page");
}

TEST_CASE("simulator: a cancelled page counts as scanned") {
  const auto config = SmallFeeder(2);
  ExtendedScanner scanner(config);
  Converse(scanner, kStart + "* 79 > 18 < 06 > 0C < 06");
  CheckScanShows(config.feederPages[1], scanner, FromOption());
}

TEST_CASE("simulator: a reset leaves the paper where it is") {
  Play(SmallFeeder(1), "> 19 < 06 > 1B 40 < 06 > 0C < 06");
}

TEST_CASE("simulator: the transparency unit scans what lies on the bed, in its own area") {
  const auto config = WithTransparencyUnit();
  ExtendedScanner scanner(config);
  CheckScanShows(config.onBed, scanner, FromOption());
  PlayRefused(config, SetUpWith("16: 51, 26: 01", "15"), "columns 0 + 81 of 80");
}

TEST_CASE("simulator: an open cover is status bit 04, and no page moves") {
  Play(Spoiled(SmallFeeder(1), "cover-open"),
       "> 1C 46 < 00 C4 00 * 13 > 19 < 15 > 0C < 15" + kRefused);
}

TEST_CASE("simulator: a page jams: white from there, an error behind the block, bit 02 until out") {
  const auto config = Spoiled(SmallFeeder(2), "jam-at-line=5");
  ExtendedScanner scanner(config);
  Converse(scanner, kStart + "* 79 > 06");
  const Bytes area = simulator::ScannedArea(config.feederPages[0], *scanner.Request());
  CHECK(Conversation(scanner).Read(16) == Bytes(area.begin() + 64, area.begin() + 80));
  CHECK(Conversation(scanner).Read(48) == Bytes(48, 0xFF));
  Converse(scanner, "< 80 > 1C 46 < 00 C2 00 * 13 > 19 < 15 > 0C < 06 > 1C 46 < 00 80 00");
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: nothing jams on the bed") {
  ExtendedScanner scanner(Spoiled(SmallFeeder(1), "jam-at-line=5"));
  CHECK(ScanWith(scanner, ParameterBlock(), 16).size() == 160);
}

TEST_CASE("simulator: an error of the transparency unit is status C2, and refuses scans on it") {
  ExtendedScanner scanner(Spoiled(WithTransparencyUnit(), "transparency-unit-error"));
  Converse(scanner, "> 1C 46 < 00 00 C2 * 13");
  CHECK(ScanWith(scanner, ParameterBlock(), 16).size() == 160);
  Converse(scanner, kRefused);
}
