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
  Converse(scanner, "+ L FE");
  CHECK(scanner.Parameters('L') == FromHex("FE"));
  Converse(scanner, "- L 04");
  CHECK_FALSE(scanner.Parameters('L'));
  CheckRefusal(scanner, "ESC L: 4 is not in -3 to 3");
}

TEST_CASE("simulator: colour correction needs its matrix") {
  Play(SmallStandard(), "- M 01 + m 20 00 00 00 20 00 00 00 20 + M 01");
}

TEST_CASE("simulator: a gamma that is not built in needs tables ahead of it, each time") {
  Play(SmallStandard(), "- Z 04 + z" + ToHex(Bytes(257, 'M')) + "+ Z 04 - Z 04");
}

TEST_CASE("simulator: level A has the gamma table M alone, other levels have R, G and B too") {
  for (const char selector : {'R', 'G', 'B', 'M'}) {
    const std::string table = ToHex(Bytes(257, static_cast<std::uint8_t>(selector)));
    Play(SmallStandard("B5"), "+ z" + table);
    Play(SmallStandard("A5"), (selector == 'M' ? "+ z" : "- z") + table);
  }
}

TEST_CASE("simulator: both resolutions are alike, between the first and the last listed one") {
  StandardScanner scanner(SmallStandard());
  Converse(scanner, "+ R 32 00 32 00 + R 64 00 64 00 + R 4B 00 4B 00");
  Converse(scanner, "- R 64 00 65 00 - R 31 00 31 00 - R 65 00 65 00");
  CHECK(scanner.Refusals().back() == "ESC R: 101 dots per inch are out of range");
}

TEST_CASE("simulator: a scanner that lists half scans at twice the last resolution") {
  auto config = SmallStandard();
  config.identity.listsHalf = true;
  Play(config,
       "+ R C8 00 C8 00 + H 64 64 + A 00 00 00 00 90 01 90 01"
       "- A 00 00 00 00 90 01 91 01 - R C9 00 C9 00");
}

TEST_CASE("simulator: both zooms are alike, from 50 to 200 percent") {
  Play(SmallStandard(), "+ H 32 32 + H C8 C8 - H 64 65 - H 31 31 - H C9 C9");
}

TEST_CASE("simulator: an area lies on the bed and has groups of 8 pixels") {
  Play(SmallStandard(), Upload("A 00 00 00 00 C8 00 C8 00"));
  struct Row {
    std::string area;
    std::string_view why;
  };
  for (const Row& row : {Row{"01 00 00 00 C8 00 0A 00", "columns 1 + 200 of 200"},
                         Row{"00 00 BF 00 10 00 0A 00", "lines 191 + 10 of 200"},
                         Row{"F8 FF 00 00 10 00 0A 00", "columns 65528 + 16"},
                         Row{"00 00 00 00 00 00 0A 00", "columns 0 + 0"},
                         Row{"00 00 00 00 10 00 00 00", "lines 0 + 0"},
                         Row{"00 00 00 00 11 00 0A 00", "17 pixels is no multiple of 8"}}) {
    CAPTURE(row.area);
    StandardScanner scanner(SmallStandard());
    Converse(scanner, Upload() + "- A" + row.area);
    CheckRefusal(scanner, row.why);
    CheckNoViolations(scanner);
    CHECK_FALSE(scanner.Request());
  }
}

TEST_CASE("simulator: an area is measured at resolution times zoom, its last pixel may be cut") {
  auto config = SmallStandard();
  config.identity.flatbed = {201, 201};
  StandardScanner scanner(config);
  Converse(scanner, Upload("R 4B 00 4B 00, H 32 32, A 00 00 00 00 38 00 4C 00"));  // of 75.375
  CHECK(scanner.Request()->dotsPerInch == 38);
  Converse(scanner, "- A 00 00 00 00 38 00 4D 00");
}

TEST_CASE("simulator: the option unit that is switched on bounds the area") {
  Play(SmallStandardFeeder(1),
       Upload() + "+ e 01 + A 00 00 00 00 60 00 96 00 - A 00 00 00 00 68 00 0A 00");
  auto config = SmallStandard();
  config.optionUnit = OptionUnit::kTransparencyUnit;
  Play(config, Upload() + "+ e 01 - A 00 00 00 00 50 00 3D 00");
}

TEST_CASE("simulator: the level bounds the width of a line") {
  struct Row {
    std::string_view level;
    std::string widest;
    std::string wider;
  };
  for (const Row& row :
       {Row{"B3", "00 10", "08 10"}, Row{"B4", "00 3F", "08 3F"}, Row{"A5", "00 3F", "08 3F"},
        Row{"B7", "00 3F", "08 3F"}, Row{"B8", "F0 7F", "F8 7F"}, Row{"B9", "00 3F", "08 3F"}}) {
    CAPTURE(row.level);
    auto config = SmallStandard(row.level);
    config.identity.flatbed = {65535, 10};
    PlayRefused(config,
                "+ R 64 00 64 00 + H 64 64 + A 00 00 00 00" + row.widest + "01 00 - A 00 00 00 00" +
                    row.wider + "01 00",
                "pixels are too many");
  }
}

TEST_CASE("simulator: an area needs an accepted resolution and zoom, and goes with them") {
  StandardScanner scanner(SmallStandard());
  Converse(scanner, "- A 00 00 00 00 10 00 0A 00");
  CheckRefusal(scanner, "ESC A: no resolution and zoom were accepted");
  for (const char* other : {"+ R 32 00 32 00", "+ H 64 64", "+ e 00"}) {
    Converse(scanner, Upload());
    CHECK(scanner.Request());
    Converse(scanner, other);
    CHECK_FALSE(scanner.Request());
  }
}

TEST_CASE("simulator: ESC G starts the scan that the parameters made") {
  StandardScanner scanner(SmallStandard());
  Converse(scanner, Upload("C 13, H 32 32, A 03 00 05 00 18 00 07 00, K 01"));
  REQUIRE(scanner.Request());
  CHECK(scanner.Request()->dotsPerInch == 50);
  CHECK(scanner.Request()->left == 3);
  CHECK(scanner.Request()->top == 5);
  CHECK(scanner.Request()->width == 24);
  CHECK(scanner.Request()->height == 7);
  CHECK(scanner.Request()->colorMode == simulator::ColorMode::kRedGreenBlue);
  CHECK(scanner.Request()->mirrored);
}
