#include <doctest/doctest.h>

#include "simulator/device/line_format.h"
#include "simulator/extended/extended_scanner.h"
#include "tests/simulator/simulator_conversation.h"

// The parameter block, and image data in blocks.

using namespace simulator_test;
using simulator::ExtendedScanner;

namespace {

void CheckRefused(std::string_view changes, std::string_view why) {
  CAPTURE(changes);
  ExtendedScanner scanner(SmallFlatbed());
  Converse(scanner, SetUpWith(changes, "15"));
  CheckRefusal(scanner, why);
  CheckNoViolations(scanner);
  CHECK_FALSE(scanner.Request());
}

}  // namespace

TEST_CASE("simulator: FS W with a possible scan is acknowledged and understood") {
  ExtendedScanner scanner(SmallFlatbed());
  Converse(scanner, SetUpWith("8: 03, 12: 05, 36: 01"));
  REQUIRE(scanner.Request());
  CHECK(scanner.Request()->dotsPerInch == 100);
  CHECK(scanner.Request()->left == 3);
  CHECK(scanner.Request()->top == 5);
  CHECK(scanner.Request()->width == 16);
  CHECK(scanner.Request()->height == 10);
  CHECK(scanner.Request()->mirrored);
}

TEST_CASE("simulator: FS W refuses a resolution outside the scanner's range") {
  CheckRefused("0: 31, 4: 31", "49 dots per inch");
  CheckRefused("0: C9, 4: C9", "201 dots per inch");
}

TEST_CASE("simulator: FS W refuses two different resolutions") {
  CheckRefused("4: 65", "resolutions differ");
}

TEST_CASE("simulator: FS W refuses an area that is empty or reaches outside the bed") {
  CheckRefused("16: C9", "columns 0 + 201 of 200");
  CheckRefused("20: C9", "lines 0 + 201 of 200");
  CheckRefused("16: 00", "columns 0 + 0");
  CheckRefused("20: 00", "lines 0 + 0");
  CheckRefused("8: FF FF FF FF", "columns 4294967295 + 16");
}

TEST_CASE("simulator: FS W measures the area at the scan resolution") {
  auto config = SmallFlatbed();
  config.identity.flatbed = {201, 200};
  Play(config, SetUpWith("0: 32, 4: 32, 16: 64, 20: 64"));
}

TEST_CASE("simulator: FS W refuses blocks of 0 lines, unknown colour modes and depths") {
  CheckRefused("28: 00", "0 lines per block");
  CheckRefused("24: 33", "colour mode 33");
  CheckRefused("25: 0A", "10 bits");
  CheckRefused("25: 00", "0 bits");
}

TEST_CASE("simulator: FS W refuses lines of 1 bit in colour or with a broken last byte") {
  CheckRefused("24: 13 01", "no colour");
  CheckRefused("16: 11, 25: 01", "17 pixels of 1 bit");
}

TEST_CASE("simulator: FS W refuses an option unit that is not fitted") {
  CheckRefused("26: 01", "no option unit");
}

TEST_CASE("simulator: a refused FS W leaves nothing to scan") {
  ExtendedScanner scanner(SmallFlatbed());
  Converse(scanner, kSetUp + SetUpWith("28: 00", "15"));
  CHECK_FALSE(scanner.Request());
}

TEST_CASE("simulator: FS G announces full blocks and a last block of one line at least") {
  struct Row {
    std::string_view height;
    std::string header;
  };
  for (const Row& row : {Row{"20: 0A", "02 00 40 00 00 00 02 00 00 00 20 00 00 00"},
                         Row{"20: 08", "02 00 40 00 00 00 01 00 00 00 40 00 00 00"},
                         Row{"20: 09", "02 00 40 00 00 00 02 00 00 00 10 00 00 00"},
                         Row{"20: 01", "02 00 40 00 00 00 00 00 00 00 10 00 00 00"}}) {
    Play(SmallFlatbed(), SetUpWith(row.height) + "> 1C 47 <" + row.header);
  }
}

TEST_CASE("simulator: by the other manner whole blocks are followed by an empty one") {
  auto config = SmallFlatbed();
  config.manners.emptyLastBlock = true;
  ExtendedScanner scanner(config);
  const Bytes image = ScanWith(scanner, With(ParameterBlock(), "20: 08"), 16);
  CHECK(image == simulator::ScannedArea(config.onBed, *scanner.Request()));
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: a block is its lines and a status byte, and waits for ACK") {
  auto config = SmallFlatbed();
  ExtendedScanner scanner(config);
  Converse(scanner, kSetUp);
  Conversation talk(scanner);
  const Bytes area = simulator::ScannedArea(config.onBed, *scanner.Request());
  Converse(scanner, "> 1C 47 * 14");
  CHECK(talk.Read(64) == Bytes(area.begin(), area.begin() + 64));
  Converse(scanner, "< 00 ! 1 > 06");
  CHECK(talk.Read(64) == Bytes(area.begin() + 64, area.begin() + 128));
  Converse(scanner, "< 00 > 06");
  CHECK(talk.Read(32) == Bytes(area.begin() + 128, area.end()));
  talk.Expect("00");
}

TEST_CASE("simulator: CAN after a block is acknowledged and ends the transfer") {
  Play(SmallFlatbed(), kSetUp + "> 1C 47 * 79 > 18 < 06 > 1C 46 * 16");
}

TEST_CASE("simulator: the same page scans again and again") {
  ExtendedScanner scanner(SmallFlatbed());
  const Bytes first = ScanWith(scanner, ParameterBlock(), 16);
  CHECK(ScanWith(scanner, ParameterBlock(), 16) == first);
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: the firmware may refuse the first transfers") {
  auto config = SmallFlatbed();
  config.manners.refusedTransfers = 2;
  const std::string refused = "> 1C 47 < 02 80 00 00 00 00 00 00 00 00 00 00 00 00";
  Play(config,
       kSetUp + refused + refused + "> 1C 47 < 02 00 * 12 * 64 < 00 > 06 * 64 < 00 > 06 * 32 < 00");
}
