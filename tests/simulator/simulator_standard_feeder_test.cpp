#include <doctest/doctest.h>

#include "simulator/device/line_format.h"
#include "tests/simulator/simulator_standard_conversation.h"

// Pages of the standard scanner's document feeder, and its transparency unit.

using namespace simulator_test;
using simulator::OptionUnit;
using simulator::StandardScanner;

namespace {

void UploadFromOption(StandardScanner& scanner) {
  CheckParameters(scanner, 'e', "01", "06");
  Upload(scanner, {});
}

void CheckScanShows(const simulator::Picture& picture, StandardScanner& scanner) {
  CHECK(StandardScanAll(scanner) == simulator::ScannedArea(picture, *scanner.Request()));
}

// Main status, feeder status and the transparency unit's status.
void CheckStatus(StandardScanner& scanner, std::string_view hex) {
  Conversation talk(scanner);
  talk.Send("1B 66");
  const Bytes reply = talk.Read(15);
  CHECK(ToHex({reply[4], reply[5], reply[10]}) == hex);
}

}  // namespace

TEST_CASE("simulator: a standard scan with the option on loads the next page") {
  const auto config = SmallStandardFeeder(2);
  StandardScanner scanner(config);
  UploadFromOption(scanner);
  CheckScanShows(config.feederPages[0], scanner);
  CheckScanShows(config.feederPages[1], scanner);
  CheckStatus(scanner, "00 C8 00");
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: a standard scan with the option off takes the bed") {
  const auto config = SmallStandardFeeder(1);
  StandardScanner scanner(config);
  Upload(scanner, {});
  CheckScanShows(config.onBed, scanner);
  CheckStatus(scanner, "00 80 00");
}

TEST_CASE("simulator: the standard feeder feeds and ejects") {
  StandardScanner scanner(SmallStandardFeeder(1));
  SendAndExpect(scanner, "0C", "15");
  SendAndExpect(scanner, "19", "06");
  SendAndExpect(scanner, "0C", "06");
  CheckStatus(scanner, "00 C8 00");
  SendAndExpect(scanner, "19", "15");
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: without a feeder level B refuses an eject, level A acknowledges it") {
  StandardScanner b(SmallStandard("B5"));
  SendAndExpect(b, "0C", "15");
  StandardScanner a(SmallStandard("A5"));
  SendAndExpect(a, "0C", "06");
  CHECK(a.Ejects() == 1);
  CHECK(b.Ejects() == 0);
  SendAndExpect(a, "19", "15");
}

TEST_CASE("simulator: level A ejects a page of its feeder, and needs one") {
  auto config = SmallStandardFeeder(1);
  config.identity.level = "A5";
  StandardScanner scanner(config);
  CheckParameters(scanner, 'e', "01", "06");
  SendAndExpect(scanner, "0C", "15");
  SendAndExpect(scanner, "19", "06");
  SendAndExpect(scanner, "0C", "06");
  CheckStatus(scanner, "00 C8 00");
}

TEST_CASE("simulator: a start on the empty feeder is refused") {
  StandardScanner scanner(SmallStandardFeeder(0));
  UploadFromOption(scanner);
  SendAndExpect(scanner, "1B 47", "02 80 00 00 00 00");
  CheckRefusal(scanner, "no page that it can load");
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: values above 1 are for the standard feeder's variant alone") {
  auto config = SmallStandardFeeder(1);
  StandardScanner plain(config);
  CheckParameters(plain, 'e', "02", "15");
  config.identity.feederFlags = 0x20;
  StandardScanner variant(config);
  CheckParameters(variant, 'e', "02", "06");
  CHECK(variant.OptionValue() == 2);
}

TEST_CASE("simulator: an open cover of the standard feeder is status C4, and no page moves") {
  auto config = SmallStandardFeeder(1);
  config.defects.coverOpen = true;
  StandardScanner scanner(config);
  CheckStatus(scanner, "00 C4 00");
  SendAndExpect(scanner, "19", "15");
  UploadFromOption(scanner);
  SendAndExpect(scanner, "1B 47", "02 80 00 00 00 00");
}

TEST_CASE("simulator: a page jams: its block has no lines, and status C2 until it is out") {
  auto config = SmallStandardFeeder(2);
  config.defects.jamAtLine = 5;
  StandardScanner scanner(config);
  UploadFromOption(scanner);
  Conversation talk(scanner);
  talk.Send("1B 47");
  talk.Read(6 + 64);
  talk.Send("06");
  talk.Expect("02 80 10 00 00 00");
  CheckStatus(scanner, "00 C2 00");
  SendAndExpect(scanner, "0C", "06");
  CheckStatus(scanner, "00 80 00");
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: a page that jams at a block's first line leaves the block before whole") {
  auto config = SmallStandardFeeder(1);
  config.defects.jamAtLine = 4;
  StandardScanner scanner(config);
  UploadFromOption(scanner);
  SendAndExpect(scanner, "1B 47", "02 00 10 00 04 00");
  Conversation talk(scanner);
  talk.Read(64);
  talk.Send("06");
  talk.Expect("02 80 10 00 00 00");
}

TEST_CASE("simulator: a page that jams in its last block does not mark it as the last") {
  auto config = SmallStandardFeeder(1);
  config.defects.jamAtLine = 9;
  StandardScanner scanner(config);
  UploadFromOption(scanner);
  Conversation talk(scanner);
  talk.Send("1B 47");
  for (int block = 0; block < 2; ++block) {
    talk.Read(6 + 64);
    talk.Send("06");
  }
  talk.Expect("02 80 10 00 00 00");
}

TEST_CASE("simulator: in line mode a line that jams begins with NAK") {
  auto config = SmallStandardFeeder(1);
  config.defects.jamAtLine = 0;
  StandardScanner scanner(config);
  CheckParameters(scanner, 'e', "01", "06");
  StandardScan scan;
  scan.linesPerBlock = 0;
  Upload(scanner, scan);
  Conversation talk(scanner);
  talk.Send("1B 47");
  talk.Expect("02 00 10 00 01 00  15 80 10 00");
  CHECK(talk.ReadInVain(1).empty());
}

TEST_CASE("simulator: the standard transparency unit scans the bed, and may have an error") {
  auto config = SmallStandard();
  config.optionUnit = OptionUnit::kTransparencyUnit;
  StandardScanner sound(config);
  UploadFromOption(sound);
  CheckScanShows(config.onBed, sound);
  config.defects.transparencyUnitError = true;
  StandardScanner broken(config);
  CheckStatus(broken, "00 00 C2");
  UploadFromOption(broken);
  SendAndExpect(broken, "1B 47", "02 80 00 00 00 00");
  CheckRefusal(broken, "transparency unit");
}
