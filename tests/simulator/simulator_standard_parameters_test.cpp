#include <doctest/doctest.h>

#include "tests/simulator/simulator_standard_conversation.h"

// Which parameters the standard scanner takes.

using namespace simulator_test;
using simulator::OptionUnit;
using simulator::StandardScanner;

namespace {

// Of all one-byte parameters those that a fresh scanner of the level accepts.
Bytes Accepted(char letter, std::string_view level = "B8") {
  Bytes accepted;
  for (unsigned value = 0; value < 256; ++value) {
    StandardScanner scanner(SmallStandard(level));
    Conversation talk(scanner);
    talk.Send(Bytes{0x1B, static_cast<std::uint8_t>(letter)});
    talk.Expect("06");
    talk.Send(Bytes{static_cast<std::uint8_t>(value)});
    if (talk.Read(1)[0] == 0x06) accepted.push_back(static_cast<std::uint8_t>(value));
    CheckNoViolations(scanner);
  }
  return accepted;
}

void CheckAreaRefused(const simulator::StandardScannerConfig& config, const StandardScan& scan,
                      std::string_view why) {
  StandardScanner scanner(config);
  Upload(scanner, {});
  CheckParameters(scanner, 'A', ToHex(scan.Area()), "15");
  CheckRefusal(scanner, why);
  CheckNoViolations(scanner);
  CHECK_FALSE(scanner.Request());
}

StandardScan Area(std::uint16_t left, std::uint16_t top, std::uint16_t width,
                  std::uint16_t height) {
  StandardScan scan;
  scan.left = left;
  scan.top = top;
  scan.width = width;
  scan.height = height;
  return scan;
}

}  // namespace

TEST_CASE("simulator: the values that each one-byte parameter may have") {
  CHECK(ToHex(Accepted('C')) == "00 01 02 10 13 20 30");
  CHECK(ToHex(Accepted('D')) == "01 03 04 08 0C");
  CHECK(ToHex(Accepted('K')) == "00 01");
  CHECK(ToHex(Accepted('L')) == "00 01 02 03 FD FE FF");
  CHECK(ToHex(Accepted('M')) == "00");
  CHECK(ToHex(Accepted('Q')) == "00 01 02 FE FF");
  CHECK(ToHex(Accepted('Z')) == "00 01 02 10 20");
  CHECK(ToHex(Accepted('e')) == "00");
  CHECK(ToHex(Accepted('s')) == "00 01 02");
  CHECK(Accepted('d').size() == 255);
  CHECK(Accepted('d').front() == 1);
  CHECK(Accepted('g').size() == 256);
  CHECK(Accepted('t').size() == 256);
}

TEST_CASE("simulator: halftones come with the level") {
  CHECK(ToHex(Accepted('B', "B3")) == "00 01 10 20");
  CHECK(ToHex(Accepted('B', "B4")) == "00 01 10 20 80 90 A0 B0");
  CHECK(ToHex(Accepted('B', "B5")) == "00 01 03 10 20 80 90 A0 B0");
  CHECK(ToHex(Accepted('B', "A5")) == "00 01 03 10 20 80 90 A0 B0");
}

TEST_CASE("simulator: what was accepted is kept, what is refused is forgotten") {
  StandardScanner scanner(SmallStandard());
  CheckParameters(scanner, 'L', "FE", "06");
  CHECK(scanner.Parameters('L') == FromHex("FE"));
  CheckParameters(scanner, 'L', "04", "15");
  CHECK_FALSE(scanner.Parameters('L'));
  CheckRefusal(scanner, "ESC L: 4 is not in -3 to 3");
}

TEST_CASE("simulator: colour correction needs its matrix") {
  StandardScanner scanner(SmallStandard());
  CheckParameters(scanner, 'M', "01", "15");
  CheckParameters(scanner, 'm', "20 00 00 00 20 00 00 00 20", "06");
  CheckParameters(scanner, 'M', "01", "06");
}

TEST_CASE("simulator: a gamma that is not built in needs tables ahead of it, each time") {
  StandardScanner scanner(SmallStandard());
  CheckParameters(scanner, 'Z', "04", "15");
  CheckParameters(scanner, 'z', ToHex(Bytes(257, 'M')), "06");
  CheckParameters(scanner, 'Z', "04", "06");
  CheckParameters(scanner, 'Z', "04", "15");
}

TEST_CASE("simulator: level A has the gamma table M alone, other levels have R, G and B too") {
  for (const char selector : {'R', 'G', 'B', 'M'}) {
    const std::string table = ToHex(Bytes(257, static_cast<std::uint8_t>(selector)));
    StandardScanner b(SmallStandard("B5"));
    CheckParameters(b, 'z', table, "06");
    StandardScanner a(SmallStandard("A5"));
    CheckParameters(a, 'z', table, selector == 'M' ? "06" : "15");
  }
}

TEST_CASE("simulator: both resolutions are alike, between the first and the last listed one") {
  StandardScanner scanner(SmallStandard());
  CheckParameters(scanner, 'R', "32 00 32 00", "06");
  CheckParameters(scanner, 'R', "64 00 64 00", "06");
  CheckParameters(scanner, 'R', "4B 00 4B 00", "06");
  CheckParameters(scanner, 'R', "64 00 65 00", "15");
  CheckParameters(scanner, 'R', "31 00 31 00", "15");
  CheckParameters(scanner, 'R', "65 00 65 00", "15");
  CHECK(scanner.Refusals().back() == "ESC R: 101 dots per inch are out of range");
}

TEST_CASE("simulator: a scanner that lists half scans at twice the last resolution") {
  auto config = SmallStandard();
  config.identity.listsHalf = true;
  StandardScanner scanner(config);
  CheckParameters(scanner, 'R', "C8 00 C8 00", "06");
  CheckParameters(scanner, 'H', "64 64", "06");
  CheckParameters(scanner, 'A', ToHex(Area(0, 0, 400, 400).Area()), "06");
  CheckParameters(scanner, 'A', ToHex(Area(0, 0, 400, 401).Area()), "15");
  CheckParameters(scanner, 'R', "C9 00 C9 00", "15");
}

TEST_CASE("simulator: both zooms are alike, from 50 to 200 percent") {
  StandardScanner scanner(SmallStandard());
  CheckParameters(scanner, 'H', "32 32", "06");
  CheckParameters(scanner, 'H', "C8 C8", "06");
  CheckParameters(scanner, 'H', "64 65", "15");
  CheckParameters(scanner, 'H', "31 31", "15");
  CheckParameters(scanner, 'H', "C9 C9", "15");
}

TEST_CASE("simulator: an area lies on the bed and has groups of 8 pixels") {
  StandardScanner scanner(SmallStandard());
  Upload(scanner, Area(0, 0, 200, 200));
  CheckAreaRefused(SmallStandard(), Area(1, 0, 200, 10), "columns 1 + 200 of 200");
  CheckAreaRefused(SmallStandard(), Area(0, 191, 16, 10), "lines 191 + 10 of 200");
  CheckAreaRefused(SmallStandard(), Area(0xFFF8, 0, 16, 10), "columns 65528 + 16");
  CheckAreaRefused(SmallStandard(), Area(0, 0, 0, 10), "columns 0 + 0");
  CheckAreaRefused(SmallStandard(), Area(0, 0, 16, 0), "lines 0 + 0");
  CheckAreaRefused(SmallStandard(), Area(0, 0, 17, 10), "17 pixels is no multiple of 8");
}

TEST_CASE("simulator: an area is measured at resolution times zoom, its last pixel may be cut") {
  auto config = SmallStandard();
  config.identity.flatbed = {201, 201};
  StandardScanner scanner(config);
  StandardScan scan = Area(0, 0, 56, 76);  // 75.375 lines
  scan.resolution = 75;
  scan.zoom = 50;
  Upload(scanner, scan);
  CHECK(scanner.Request()->dotsPerInch == 38);
  CheckParameters(scanner, 'A', ToHex(Area(0, 0, 56, 77).Area()), "15");
}

TEST_CASE("simulator: the option unit that is switched on bounds the area") {
  StandardScanner scanner(SmallStandardFeeder(1));
  Upload(scanner, {});
  CheckParameters(scanner, 'e', "01", "06");
  CheckParameters(scanner, 'A', ToHex(Area(0, 0, 96, 150).Area()), "06");
  CheckParameters(scanner, 'A', ToHex(Area(0, 0, 104, 10).Area()), "15");
  auto config = SmallStandard();
  config.optionUnit = OptionUnit::kTransparencyUnit;
  StandardScanner transparency(config);
  Upload(transparency, {});
  CheckParameters(transparency, 'e', "01", "06");
  CheckParameters(transparency, 'A', ToHex(Area(0, 0, 80, 61).Area()), "15");
}

TEST_CASE("simulator: the level bounds the width of a line") {
  struct Row {
    const char* level;
    std::uint16_t widest;
  };
  for (const Row& row : {Row{"B3", 4096}, Row{"B4", 16128}, Row{"A5", 16128}, Row{"B7", 16128},
                         Row{"B8", 32752}, Row{"B9", 16128}}) {
    auto config = SmallStandard(row.level);
    config.identity.flatbed = {65535, 10};
    StandardScanner scanner(config);
    CheckParameters(scanner, 'R', "64 00 64 00", "06");
    CheckParameters(scanner, 'H', "64 64", "06");
    CheckParameters(scanner, 'A', ToHex(Area(0, 0, row.widest, 1).Area()), "06");
    const auto wider = static_cast<std::uint16_t>(row.widest + 8);
    CheckParameters(scanner, 'A', ToHex(Area(0, 0, wider, 1).Area()), "15");
    CheckRefusal(scanner, "pixels are too many");
  }
}

TEST_CASE("simulator: an area needs an accepted resolution and zoom, and goes with them") {
  StandardScanner scanner(SmallStandard());
  CheckParameters(scanner, 'A', ToHex(StandardScan{}.Area()), "15");
  CheckRefusal(scanner, "ESC A: no resolution and zoom were accepted");
  for (const auto& [letter, parameters] :
       {std::pair{'R', "32 00 32 00"}, std::pair{'H', "64 64"}, std::pair{'e', "00"}}) {
    Upload(scanner, {});
    CHECK(scanner.Request());
    CheckParameters(scanner, letter, parameters, "06");
    CHECK_FALSE(scanner.Request());
  }
}

TEST_CASE("simulator: ESC G starts the scan that the parameters made") {
  StandardScanner scanner(SmallStandard());
  StandardScan scan = Area(3, 5, 24, 7);
  scan.colorMode = 0x13;
  scan.zoom = 50;
  Upload(scanner, scan);
  CheckParameters(scanner, 'K', "01", "06");
  REQUIRE(scanner.Request());
  CHECK(scanner.Request()->dotsPerInch == 50);
  CHECK(scanner.Request()->left == 3);
  CHECK(scanner.Request()->top == 5);
  CHECK(scanner.Request()->width == 24);
  CHECK(scanner.Request()->height == 7);
  CHECK(scanner.Request()->colorMode == simulator::ColorMode::kRedGreenBlue);
  CHECK(scanner.Request()->mirrored);
}
