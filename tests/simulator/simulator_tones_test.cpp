#include <doctest/doctest.h>

#include "simulator/device/gamma_tables.h"
#include "simulator/device/line_format.h"
#include "simulator/tones/image_filters.h"
#include "simulator/tones/screens.h"
#include "tests/simulator/simulator_conversation.h"

// What the simulated scanners make of the numbers for tones.

using namespace simulator_test;

namespace {

// The top left of a grey area under a screen: a row a line, "#" where it is white.
std::string Screened(std::uint8_t screen, std::uint16_t grey, std::uint32_t size = 4) {
  std::string text;
  for (std::uint32_t y = 0; y < size; ++y) {
    if (y > 0) text += ' ';
    for (std::uint32_t x = 0; x < size; ++x) {
      text += simulator::IsWhite(screen, 0x80, grey, x, y) ? '#' : '.';
    }
  }
  return text;
}

// Byte 29 and its likes of a block that is answered with a refusal.
void CheckRefused(std::size_t place, std::uint8_t value, std::string_view why) {
  simulator::ExtendedScanner scanner(SmallFlatbed());
  Conversation talk(scanner);
  Bytes block = ParameterBlock();
  block[place] = value;
  talk.Send("1C 57");
  talk.Expect("06");
  talk.Send(block);
  talk.Expect("15");
  CheckRefusal(scanner, why);
  CheckNoViolations(scanner);
}

}  // namespace

TEST_CASE("simulator: without a screen a sample is white from the threshold on") {
  using simulator::IsWhite;
  CHECK_FALSE(IsWhite(0x01, 0x80, 0x7FFF, 3, 5));
  CHECK(IsWhite(0x01, 0x80, 0x8000, 3, 5));
  CHECK_FALSE(IsWhite(0x01, 0x6E, 0x6DFF, 0, 0));
  CHECK(IsWhite(0x01, 0x6E, 0x6E00, 0, 0));
  CHECK(IsWhite(0x01, 0, 0, 0, 0));
}

TEST_CASE("simulator: half of full light is white in half of a screen") {
  CHECK(Screened(0x00, 0x8000) == "#.#. .#.# #.#. .#.#");
  CHECK(Screened(0x10, 0x8000) == "#.#. .#.# #.#. .#.#");
  CHECK(Screened(0x20, 0x8000) == "#.#. .#.# #.#. .#.#");
  CHECK(Screened(0x80, 0x8000) == ".##. #### .##. ....");
  CHECK(Screened(0x90, 0x8000, 8) ==
        "..####.. ..####.. ######## ######## ..####.. ..####.. ........ ........");
  CHECK(Screened(0xA0, 0x8000) == ".... #### #### ....");
  CHECK(Screened(0xB0, 0x8000) == ".##. ##.. #..# ..##");
}

TEST_CASE("simulator: a larger screen shows darker greys, each cell beginning at one place") {
  CHECK(Screened(0x00, 0x1FFF) == ".... .... .... ....");
  CHECK(Screened(0x00, 0x2000) == "#.#. .... #.#. ....");
  CHECK(Screened(0x10, 0x07FF) == ".... .... .... ....");
  CHECK(Screened(0x10, 0x0800) == "#... .... .... ....");
  CHECK(Screened(0x20, 0x01FF) == ".... .... .... ....");
  CHECK(Screened(0x20, 0x0200) == "#... .... .... ....");
  CHECK(Screened(0x80, 0x0800) == ".... .#.. .... ....");
  CHECK(Screened(0x20, 0xFDFF) == "#### #### #### ####");
}

TEST_CASE("simulator: the mixed screen keeps dark and light whole") {
  CHECK(Screened(0x03, 0x3FFF) == ".... .... .... ....");
  CHECK(Screened(0x03, 0x8000) == "#.#. .#.# #.#. .#.#");
  CHECK(Screened(0x03, 0xC000) == "#### #### #### ####");
}

TEST_CASE("simulator: full light is white and black is black in every screen") {
  for (const std::uint8_t code : Bytes{0x00, 0x01, 0x03, 0x10, 0x20, 0x80, 0x90, 0xA0, 0xB0}) {
    CHECK(Screened(code, 0xFFFF).find('.') == std::string::npos);
    CHECK(Screened(code, 0).find('#') == std::string::npos);
  }
}

TEST_CASE("simulator: a screen stands still on the bed, wherever the area begins") {
  simulator::ExtendedScannerConfig config = SmallFlatbed();
  Bytes block = ParameterBlock();
  block[25] = 1;
  block[32] = 0xB0;
  simulator::ExtendedScanner whole(config);
  const Bytes all = ScanWith(whole, block, 2);
  Put32(block, 8, 5);
  Put32(block, 12, 3);
  Put32(block, 16, 8);
  Put32(block, 20, 4);
  simulator::ExtendedScanner part(config);
  const Bytes shifted = ScanWith(part, block, 1);
  REQUIRE(shifted.size() == 4);
  for (std::size_t line = 0; line < 4; ++line) {
    const int both = all[2 * (line + 3)] << 8 | all[2 * (line + 3) + 1];
    CHECK(shifted[line] == (both >> 3 & 0xFF));
  }
}

TEST_CASE("simulator: sharpness moves a sample away from its neighbours, or towards them") {
  CHECK(simulator::Sharpened(0, 1000, 0) == 1000);
  CHECK(simulator::Sharpened(1, 1000, 4 * 600) == 1200);
  CHECK(simulator::Sharpened(2, 1000, 4 * 600) == 1400);
  CHECK(simulator::Sharpened(-1, 1000, 4 * 600) == 900);
  CHECK(simulator::Sharpened(-2, 1000, 4 * 600) == 800);
  CHECK(simulator::Sharpened(2, 0xFFFF, 0) == 0xFFFF);
  CHECK(simulator::Sharpened(2, 100, 4 * 0xFFFF) == 0);
}

TEST_CASE("simulator: each step of brightness is an eighth of full light") {
  std::vector<std::uint16_t> samples{0, 0x1000, 0x8000, 0xF000};
  simulator::Brighten(2, samples);
  CHECK(samples == std::vector<std::uint16_t>{0x4000, 0x5000, 0xC000, 0xFFFF});
  simulator::Brighten(-3, samples);
  CHECK(samples == std::vector<std::uint16_t>{0, 0, 0x6000, 0x9FFF});
}

TEST_CASE("simulator: a colour matrix tells each channel by those that went in, 32 being one") {
  std::vector<std::uint16_t> rgb{320, 640, 960};
  simulator::ApplyMatrix({32, 0, 0, 16, 16, 0, 0xE0, 0, 64}, rgb);
  CHECK(rgb == std::vector<std::uint16_t>{320, 480, 1600});
  simulator::ApplyMatrix({0xFF, 0, 0, 0, 127, 127, 0, 0, 127}, rgb);
  CHECK(rgb == std::vector<std::uint16_t>{0, 8255, 6350});
}

TEST_CASE("simulator: a built-in gamma is a table for the three channels") {
  using simulator::GammaTables;
  const auto at = [](std::uint8_t code, std::uint16_t place) {
    return GammaTables::BuiltIn(code)->OnChannel(1, static_cast<std::uint16_t>(place * 257)) / 257;
  };
  CHECK(at(0x01, 64) == 64);
  CHECK(at(0x02, 64) == 136);
  CHECK(at(0x20, 64) == 147);
  CHECK(at(0x10, 64) == 156);
  CHECK(at(0x00, 64) == 161);
  CHECK(at(0x02, 255) == 255);
  CHECK(GammaTables::BuiltIn(0x02)->OnAll(0x1234) == 0x1234);
  CHECK_FALSE(GammaTables::BuiltIn(0x04));
}

TEST_CASE("simulator: what the extended parameter block cannot say of tones is refused") {
  CheckRefused(29, 0x04, "no gamma 04");
  CheckRefused(30, 0x04, "no brightness 4");
  CheckRefused(30, 0xFC, "no brightness -4");
  CheckRefused(31, 0x01, "no colour matrix was sent");
  CheckRefused(32, 0x05, "no halftone 05");
  CheckRefused(35, 0xFD, "no sharpness -3");
}

TEST_CASE("simulator: sharpened lines are those of the slow way, at every edge of the bed") {
  for (const std::uint32_t left : {0u, 3u, 184u}) {
    for (const std::uint32_t top : {0u, 7u, 190u}) {
      const simulator::ExtendedScannerConfig config = SmallFlatbed();
      simulator::ExtendedScanner scanner(config);
      Bytes block = ParameterBlock();
      Put32(block, 8, left);
      Put32(block, 12, top);
      block[35] = 2;
      const Bytes image = ScanWith(scanner, block, 16);
      CHECK(image == simulator::ScannedArea(config.onBed, *scanner.Request()));
      block[35] = 0;
      CHECK(image != ScanWith(scanner, block, 16));
    }
  }
}
