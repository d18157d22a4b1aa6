#include <doctest/doctest.h>

#include "tests/simulator/simulator_standard_conversation.h"

// What the standard scanner tells, and which commands each level knows.

using namespace simulator_test;
using simulator::OptionUnit;
using simulator::StandardScanner;

namespace {

// The letters of `candidates` that a scanner of the level answers otherwise than with NAK.
std::string Known(std::string_view level, std::string_view candidates) {
  std::string known;
  for (const char letter : candidates) {
    StandardScanner scanner(SmallStandard(level));
    Conversation talk(scanner);
    talk.Send(Bytes{0x1B, static_cast<std::uint8_t>(letter)});
    if (talk.Read(1)[0] != 0x15) known += letter;
  }
  return known;
}

constexpr std::string_view kAllLetters = "?@ABCDFGHIKLMQRZdefgmpqstz";

}  // namespace

TEST_CASE("simulator: standard ESC I tells level, resolutions and bed, without the extended bit") {
  Play(SmallStandard(), "> 1B 49 < 02 00 0D 00  42 38  52 32 00  52 64 00  41 C8 00 C8 00");
}

TEST_CASE("simulator: standard ESC ? tells the product name behind eight bytes") {
  auto config = SmallStandard();
  config.identity.productName = "SCANNER RV-5000 ";
  Play(config,
       "> 1B 3F < 02 00 18 00  42 38 00 00 00 00 00 00"
       "53 43 41 4E 4E 45 52 20 52 56 2D 35 30 30 30 20");
}

TEST_CASE("simulator: a product name is cut to 16 characters or filled with zeros") {
  auto config = SmallStandard();
  config.identity.productName = "AB";
  Play(config,
       "> 1B 3F < 02 00 18 00  42 38 00 00 00 00 00 00"
       "41 42 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
  config.identity.productName = "ABCDEFGHIJKLMNOPQRS";
  Play(config,
       "> 1B 3F < 02 00 18 00  42 38 00 00 00 00 00 00"
       "41 42 43 44 45 46 47 48 49 4A 4B 4C 4D 4E 4F 50");
}

TEST_CASE("simulator: standard ESC F is a header without data") {
  Play(SmallStandard(), "> 1B 46 < 02 00 00 00");
}

TEST_CASE("simulator: standard ESC f of a healthy flatbed is eleven zeros") {
  Play(SmallStandard(), "> 1B 66 < 02 00 0B 00  00 00 00 00 00 00 00 00 00 00 00");
}

TEST_CASE("simulator: standard ESC f tells the option unit that is fitted, with its area") {
  auto config = SmallStandardFeeder(1);
  Play(config, "> 1B 66 < 02 00 0B 00  00 80 60 00 96 00 00 00 00 00 00");
  config.optionUnit = OptionUnit::kTransparencyUnit;
  Play(config, "> 1B 66 < 02 00 0B 00  00 00 00 00 00 00 80 50 00 3C 00");
}

TEST_CASE("simulator: feeder flags are bits 20 and 10 of the main status, with a feeder only") {
  auto config = SmallStandardFeeder(1);
  config.identity.feederFlags = 0x38;
  Play(config, "> 1B 66 < 02 00 0B 00  30 80 60 00 96 00 00 00 00 00 00");
  config.optionUnit = OptionUnit::kNone;
  Play(config, "> 1B 66 < 02 00 0B 00  00 00 00 00 00 00 00 00 00 00 00");
}

TEST_CASE("simulator: each level knows its commands") {
  CHECK(Known("B1", kAllLetters) == "?@ABCDFGHILMRZe");
  CHECK(Known("B2", kAllLetters) == "?@ABCDFGHILMRZe");
  CHECK(Known("B3", kAllLetters) == "?@ABCDFGHILMRZe");
  CHECK(Known("B4", kAllLetters) == "?@ABCDFGHILMQRZdefgmz");
  CHECK(Known("B5", kAllLetters) == "?@ABCDFGHIKLMQRZdefgmz");
  CHECK(Known("A5", kAllLetters) == "?@ABCDFGHIKLQRZdefgsz");
  CHECK(Known("B6", kAllLetters) == "?@ABCDFGHIKLMQRZdefgmsz");
  CHECK(Known("B7", kAllLetters) == "?@ABCDFGHIKLMQRZdefgmsz");
  CHECK(Known("B8", kAllLetters) == kAllLetters);
  CHECK(Known("B9", kAllLetters) == kAllLetters);
}

TEST_CASE("simulator: a command that the level does not know is a violation") {
  PlayWrongly(SmallStandard("B3"), "> 1B 66 < 15",
              "expected a command that the scanner knows, got ESC f");
}

TEST_CASE("simulator: the standard scanner knows no extended command") {
  PlayWrongly(SmallStandard(), "> 1C 49 < 15", "got FS I");
}

TEST_CASE("simulator: standard ESC @ is acknowledged and forgets what was set") {
  StandardScanner scanner(SmallStandardFeeder(1));
  Converse(scanner,
           Upload() + "+ m 01 02 03 04 05 06 07 08 09 + e 01 + z" + ToHex(Bytes(257, 'M')));
  REQUIRE(scanner.ColorMatrix());
  Converse(scanner, "> 1B 40 < 06");
  CHECK_FALSE(scanner.Request());
  CHECK_FALSE(scanner.ColorMatrix());
  CHECK_FALSE(scanner.Parameters('d'));
  CHECK(scanner.OptionValue() == 0);
  Converse(scanner, "- Z 04");
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: the standard scanner focuses like the extended one") {
  auto config = SmallStandard();
  config.manners.focusFound = 0x39;
  StandardScanner scanner(config);
  Converse(scanner, "+ p FF > 1B 71 < 02 00 02 00 00 39");
  CHECK(scanner.FocusPosition() == 0xFF);
}
