#include <doctest/doctest.h>

#include "simulator/device/line_format.h"
#include "tests/simulator/simulator_standard_conversation.h"

// Pages of the standard scanner's document feeder, and its transparency unit.

using namespace simulator_test;
using simulator::OptionUnit;
using simulator::StandardScanner;

namespace {

// A scan from the option unit, and one that is refused; it has two blocks of 4 lines and one of 2.
const std::string kStart = kUploadOption + "> 1B 47";
const std::string kRefused = kStart + "< 02 80 00 00 00 00";

// The reply to ESC f with main status, feeder status and the transparency unit's status.
std::string Status(std::string_view main, std::string_view feeder, std::string_view transparency) {
  return "> 1B 66 * 4 <" + std::string(main) + "<" + std::string(feeder) + "* 4 <" +
         std::string(transparency) + "* 4";
}

void CheckScanShows(const simulator::Picture& picture, StandardScanner& scanner) {
  CHECK(StandardScanAll(scanner) == simulator::ScannedArea(picture, *scanner.Request()));
}

}  // namespace

TEST_CASE("simulator: a standard scan with the option on loads the next page") {
  const auto config = SmallStandardFeeder(2);
  StandardScanner scanner(config);
  Converse(scanner, kUploadOption);
  CheckScanShows(config.feederPages[0], scanner);
  CheckScanShows(config.feederPages[1], scanner);
  Converse(scanner, Status("00", "C8", "00"));
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: a standard scan with the option off takes the bed") {
  const auto config = SmallStandardFeeder(1);
  StandardScanner scanner(config);
  Converse(scanner, Upload());
  CheckScanShows(config.onBed, scanner);
  Converse(scanner, Status("00", "80", "00"));
}

TEST_CASE("simulator: the standard feeder feeds and ejects") {
  Play(SmallStandardFeeder(1),
       "> 0C < 15 > 19 < 06 > 0C < 06" + Status("00", "C8", "00") + "> 19 < 15");
}

TEST_CASE("simulator: without a feeder level B refuses an eject, level A acknowledges it") {
  StandardScanner b(SmallStandard("B5"));
  Converse(b, "> 0C < 15");
  CHECK(b.Ejects() == 0);
  StandardScanner a(SmallStandard("A5"));
  Converse(a, "> 0C < 06 > 19 < 15");
  CHECK(a.Ejects() == 1);
}

TEST_CASE("simulator: level A ejects a page of its feeder, and needs one") {
  auto config = SmallStandardFeeder(1);
  config.identity.level = "A5";
  StandardScanner scanner(config);
  Converse(scanner, "+ e 01 > 0C < 15 > 19 < 06 > 0C < 06" + Status("00", "C8", "00"));
}

TEST_CASE("simulator: a start on the empty feeder is refused") {
  PlayRefused(SmallStandardFeeder(0), kRefused, "no page that it can load");
}

TEST_CASE("simulator: values above 1 are for the standard feeder's variant alone") {
  auto config = SmallStandardFeeder(1);
  Play(config, "- e 02");
  config.identity.feederFlags = 0x20;
  StandardScanner variant(config);
  Converse(variant, "+ e 02");
  CHECK(variant.OptionValue() == 2);
}

TEST_CASE("simulator: an open cover of the standard feeder is status C4, and no page moves") {
  Play(Spoiled(SmallStandardFeeder(1), "cover-open"),
       Status("00", "C4", "00") + "> 19 < 15" + kRefused);
}

TEST_CASE("simulator: a page jams: its block has no lines, and status C2 until it is out") {
  Play(Spoiled(SmallStandardFeeder(2), "jam-at-line=5"),
       kStart + "* 70 > 06 < 02 80 10 00 00 00" + Status("00", "C2", "00") + "> 0C < 06" +
           Status("00", "80", "00"));
}

TEST_CASE("simulator: a page that jams at a block's first line leaves the block before whole") {
  Play(Spoiled(SmallStandardFeeder(1), "jam-at-line=4"),
       kStart + "< 02 00 10 00 04 00 * 64 > 06 < 02 80 10 00 00 00");
}

TEST_CASE("simulator: a page that jams in its last block does not mark it as the last") {
  Play(Spoiled(SmallStandardFeeder(1), "jam-at-line=9"),
       kStart + "* 70 > 06 * 70 > 06 < 02 80 10 00 00 00");
}

TEST_CASE("simulator: in line mode a line that jams begins with NAK") {
  StandardScanner scanner(Spoiled(SmallStandardFeeder(1), "jam-at-line=0"));
  Converse(scanner, "+ e 01" + Upload("-d") + "> 1B 47 < 02 00 10 00 01 00  15 80 10 00 ! 1");
}

TEST_CASE("simulator: the standard transparency unit scans the bed, and may have an error") {
  auto config = SmallStandard();
  config.optionUnit = OptionUnit::kTransparencyUnit;
  StandardScanner sound(config);
  Converse(sound, kUploadOption);
  CheckScanShows(config.onBed, sound);
  PlayRefused(Spoiled(config, "transparency-unit-error"), Status("00", "00", "C2") + kRefused,
              "transparency unit");
}
