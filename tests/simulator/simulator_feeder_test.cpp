#include <doctest/doctest.h>

#include "simulator/device/line_format.h"
#include "simulator/extended/extended_scanner.h"
#include "tests/simulator/simulator_conversation.h"

// Pages of the document feeder, and the transparency unit.

using namespace simulator_test;
using simulator::ExtendedScanner;
using simulator::OptionUnit;

namespace {

Bytes FromOption() {
  Bytes block = ParameterBlock();
  block[26] = 1;
  return block;
}

Bytes AreaOf(const simulator::Picture& picture, const ExtendedScanner& scanner) {
  return simulator::ScannedArea(picture, *scanner.Request());
}

void CheckScanShows(const simulator::Picture& picture, ExtendedScanner& scanner,
                    const Bytes& parameterBlock) {
  const Bytes image = ScanWith(scanner, parameterBlock, 16);
  CHECK(image == AreaOf(picture, scanner));
}

// Bytes 0 to 2 of the status.
void CheckStatus(ExtendedScanner& scanner, std::string_view hex) {
  Conversation talk(scanner);
  talk.Send("1C 46");
  talk.Expect(hex);
  talk.Read(13);
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
  CheckStatus(scanner, "00 80 00");
}

TEST_CASE("simulator: the area of the feeder bounds a scan from it") {
  ExtendedScanner scanner(SmallFeeder(1));
  Bytes block = FromOption();
  Put32(block, 16, 101);
  SendAndExpect(scanner, "1C 57", "06");
  Conversation(scanner).Send(block);
  Conversation(scanner).Expect("15");
  CheckRefusal(scanner, "columns 0 + 101 of 100");
}

TEST_CASE("simulator: feed loads a page and is acknowledged, the same page until it was scanned") {
  const auto config = SmallFeeder(2);
  ExtendedScanner scanner(config);
  SendAndExpect(scanner, "19", "06");
  SendAndExpect(scanner, "19", "06");
  CheckScanShows(config.feederPages[0], scanner, FromOption());
  SendAndExpect(scanner, "19", "06");
  CheckScanShows(config.feederPages[1], scanner, FromOption());
  SendAndExpect(scanner, "19", "15");
  CheckRefusal(scanner, "no page that it can load");
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: eject throws the page in the path out, and needs one") {
  ExtendedScanner scanner(SmallFeeder(1));
  SendAndExpect(scanner, "0C", "15");
  SendAndExpect(scanner, "19", "06");
  SendAndExpect(scanner, "0C", "06");
  SendAndExpect(scanner, "0C", "15");
  CheckStatus(scanner, "00 C8 00");
}

TEST_CASE("simulator: without a feeder feed and eject are answered with NAK") {
  ExtendedScanner scanner(SmallFlatbed());
  SendAndExpect(scanner, "19", "15");
  SendAndExpect(scanner, "0C", "15");
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: paper is out when no page is left to scan, the one in the path included") {
  ExtendedScanner scanner(SmallFeeder(1));
  CheckStatus(scanner, "00 80 00");
  SendAndExpect(scanner, "19", "06");
  CheckStatus(scanner, "00 80 00");
  ScanWith(scanner, FromOption(), 16);
  CheckStatus(scanner, "00 C8 00");
  SendAndExpect(scanner, "0C", "06");
  CheckStatus(scanner, "00 C8 00");
}

TEST_CASE("simulator: a scan from the empty feeder is refused in the header") {
  ExtendedScanner scanner(SmallFeeder(0));
  Conversation talk(scanner);
  talk.SendAcknowledged("1C 57", FromOption());
  talk.Send("1C 47");
  talk.Expect("02 80 00 00 00 00 00 00 00 00 00 00 00 00");
  CheckRefusal(scanner, "no page");
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: a cancelled page counts as scanned") {
  const auto config = SmallFeeder(2);
  ExtendedScanner scanner(config);
  Conversation talk(scanner);
  talk.SendAcknowledged("1C 57", FromOption());
  talk.Send("1C 47");
  talk.Read(14 + 65);
  SendAndExpect(scanner, "18", "06");
  SendAndExpect(scanner, "0C", "06");
  CheckScanShows(config.feederPages[1], scanner, FromOption());
}

TEST_CASE("simulator: a reset leaves the paper where it is") {
  ExtendedScanner scanner(SmallFeeder(1));
  SendAndExpect(scanner, "19", "06");
  SendAndExpect(scanner, "1B 40", "06");
  SendAndExpect(scanner, "0C", "06");
}

TEST_CASE("simulator: the transparency unit scans what lies on the bed, in its own area") {
  auto config = SmallFlatbed();
  config.optionUnit = OptionUnit::kTransparencyUnit;
  ExtendedScanner scanner(config);
  CheckScanShows(config.onBed, scanner, FromOption());
  Bytes block = FromOption();
  Put32(block, 16, 81);
  SendAndExpect(scanner, "1C 57", "06");
  Conversation(scanner).Send(block);
  Conversation(scanner).Expect("15");
  CheckRefusal(scanner, "columns 0 + 81 of 80");
}

TEST_CASE("simulator: an open cover is status bit 04, and no page moves") {
  auto config = SmallFeeder(1);
  config.defects.coverOpen = true;
  ExtendedScanner scanner(config);
  CheckStatus(scanner, "00 C4 00");
  SendAndExpect(scanner, "19", "15");
  SendAndExpect(scanner, "0C", "15");
  Conversation talk(scanner);
  talk.SendAcknowledged("1C 57", FromOption());
  talk.Send("1C 47");
  talk.Expect("02 80");
}

TEST_CASE("simulator: a page jams: white from there, an error behind the block, bit 02 until out") {
  auto config = SmallFeeder(2);
  config.defects.jamAtLine = 5;
  ExtendedScanner scanner(config);
  Conversation talk(scanner);
  talk.SendAcknowledged("1C 57", FromOption());
  const Bytes area = AreaOf(config.feederPages[0], scanner);
  talk.Send("1C 47");
  talk.Read(14 + 65);
  talk.Send("06");
  CHECK(talk.Read(16) == Bytes(area.begin() + 64, area.begin() + 80));
  CHECK(talk.Read(48) == Bytes(48, 0xFF));
  talk.Expect("80");
  CheckStatus(scanner, "00 C2 00");
  SendAndExpect(scanner, "19", "15");
  SendAndExpect(scanner, "0C", "06");
  CheckStatus(scanner, "00 80 00");
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: nothing jams on the bed") {
  auto config = SmallFeeder(1);
  config.defects.jamAtLine = 5;
  ExtendedScanner scanner(config);
  CHECK(ScanWith(scanner, ParameterBlock(), 16).size() == 160);
}

TEST_CASE("simulator: an error of the transparency unit is status C2, and refuses scans on it") {
  auto config = SmallFlatbed();
  config.optionUnit = OptionUnit::kTransparencyUnit;
  config.defects.transparencyUnitError = true;
  ExtendedScanner scanner(config);
  CheckStatus(scanner, "00 00 C2");
  CHECK(ScanWith(scanner, ParameterBlock(), 16).size() == 160);
  Conversation talk(scanner);
  talk.SendAcknowledged("1C 57", FromOption());
  talk.Send("1C 47");
  talk.Expect("02 80");
}
