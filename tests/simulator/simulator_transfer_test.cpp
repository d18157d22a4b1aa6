#include <doctest/doctest.h>

#include <functional>

#include "simulator/device/line_format.h"
#include "simulator/extended/extended_scanner.h"
#include "tests/simulator/simulator_conversation.h"

// The parameter block, and image data in blocks.

using namespace simulator_test;
using simulator::ExtendedScanner;

namespace {

void CheckParametersRefused(const std::function<void(Bytes&)>& change, std::string_view why) {
  ExtendedScanner scanner(SmallFlatbed());
  Bytes block = ParameterBlock();
  change(block);
  Converse(scanner, "> 1C 57 < 06 >" + ToHex(block) + "< 15");
  CheckRefusal(scanner, why);
  CheckNoViolations(scanner);
  CHECK_FALSE(scanner.Request());
}

void SetSize(Bytes& block, std::uint32_t width, std::uint32_t height) {
  Put32(block, 16, width);
  Put32(block, 20, height);
}

}  // namespace

TEST_CASE("simulator: FS W with a possible scan is acknowledged and understood") {
  ExtendedScanner scanner(SmallFlatbed());
  Bytes block = ParameterBlock();
  Put32(block, 8, 3);
  Put32(block, 12, 5);
  block[36] = 1;
  Conversation(scanner).SendAcknowledged("1C 57", block);
  REQUIRE(scanner.Request());
  CHECK(scanner.Request()->dotsPerInch == 100);
  CHECK(scanner.Request()->left == 3);
  CHECK(scanner.Request()->top == 5);
  CHECK(scanner.Request()->width == 16);
  CHECK(scanner.Request()->height == 10);
  CHECK(scanner.Request()->mirrored);
}

TEST_CASE("simulator: FS W refuses a resolution outside the scanner's range") {
  CheckParametersRefused([](Bytes& b) { b[0] = b[4] = 49; }, "49 dots per inch");
  CheckParametersRefused([](Bytes& b) { b[0] = b[4] = 201; }, "201 dots per inch");
}

TEST_CASE("simulator: FS W refuses two different resolutions") {
  CheckParametersRefused([](Bytes& b) { b[4] = 101; }, "resolutions differ");
}

TEST_CASE("simulator: FS W refuses an area that is empty or reaches outside the bed") {
  CheckParametersRefused([](Bytes& b) { SetSize(b, 201, 10); }, "columns 0 + 201 of 200");
  CheckParametersRefused([](Bytes& b) { SetSize(b, 16, 201); }, "lines 0 + 201 of 200");
  CheckParametersRefused([](Bytes& b) { SetSize(b, 0, 10); }, "columns 0 + 0");
  CheckParametersRefused([](Bytes& b) { SetSize(b, 16, 0); }, "lines 0 + 0");
  CheckParametersRefused([](Bytes& b) { Put32(b, 8, 0xFFFFFFFF); }, "columns 4294967295 + 16");
}

TEST_CASE("simulator: FS W measures the area at the scan resolution") {
  auto config = SmallFlatbed();
  config.identity.flatbed = {201, 200};
  ExtendedScanner scanner(config);
  Bytes block = ParameterBlock();
  block[0] = block[4] = 50;
  SetSize(block, 100, 100);
  Conversation(scanner).SendAcknowledged("1C 57", block);
}

TEST_CASE("simulator: FS W refuses blocks of 0 lines, unknown colour modes and depths") {
  CheckParametersRefused([](Bytes& b) { b[28] = 0; }, "0 lines per block");
  CheckParametersRefused([](Bytes& b) { b[24] = 0x33; }, "colour mode 33");
  CheckParametersRefused([](Bytes& b) { b[25] = 10; }, "10 bits");
  CheckParametersRefused([](Bytes& b) { b[25] = 0; }, "0 bits");
}

TEST_CASE("simulator: FS W refuses lines of 1 bit in colour or with a broken last byte") {
  CheckParametersRefused([](Bytes& b) { b[24] = 0x13, b[25] = 1; }, "no colour");
  CheckParametersRefused([](Bytes& b) { b[25] = 1, SetSize(b, 17, 10); }, "17 pixels of 1 bit");
}

TEST_CASE("simulator: FS W refuses an option unit that is not fitted") {
  CheckParametersRefused([](Bytes& b) { b[26] = 1; }, "no option unit");
}

TEST_CASE("simulator: a refused FS W leaves nothing to scan") {
  ExtendedScanner scanner(SmallFlatbed());
  Bytes block = ParameterBlock();
  block[28] = 0;
  Converse(scanner, kSetUp + "> 1C 57 < 06 >" + ToHex(block) + "< 15");
  CHECK_FALSE(scanner.Request());
}

TEST_CASE("simulator: FS G announces full blocks and a last block of one line at least") {
  struct Row {
    std::uint32_t height;
    const char* header;
  };
  for (const Row& row : {Row{10, "02 00 40 00 00 00 02 00 00 00 20 00 00 00"},
                         Row{8, "02 00 40 00 00 00 01 00 00 00 40 00 00 00"},
                         Row{9, "02 00 40 00 00 00 02 00 00 00 10 00 00 00"},
                         Row{1, "02 00 40 00 00 00 00 00 00 00 10 00 00 00"}}) {
    Bytes block = ParameterBlock();
    SetSize(block, 16, row.height);
    Play(SmallFlatbed(), "> 1C 57 < 06 >" + ToHex(block) + "< 06 > 1C 47 <" + row.header);
  }
}

TEST_CASE("simulator: by the other manner whole blocks are followed by an empty one") {
  auto config = SmallFlatbed();
  config.manners.emptyLastBlock = true;
  ExtendedScanner scanner(config);
  Conversation talk(scanner);
  Bytes block = ParameterBlock();
  SetSize(block, 16, 8);
  talk.SendAcknowledged("1C 57", block);
  const Bytes image = ScanAll(talk, 16);
  CHECK(image == simulator::ScannedArea(config.onBed, *scanner.Request()));
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: a block is its lines and a status byte, and waits for ACK") {
  auto config = SmallFlatbed();
  ExtendedScanner scanner(config);
  Conversation talk(scanner);
  talk.SendAcknowledged("1C 57", ParameterBlock());
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
