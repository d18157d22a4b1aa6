#include <doctest/doctest.h>

#include "simulator/device/line_format.h"
#include "tests/simulator/simulator_standard_conversation.h"

// Image data of the standard scanner, in blocks and line by line.

using namespace simulator_test;
using simulator::StandardScanner;

namespace {

Bytes AreaOf(const StandardScanner& scanner, const simulator::Picture& picture) {
  return simulator::ScannedArea(picture, *scanner.Request());
}

Bytes Lines(const Bytes& area, std::size_t first, std::size_t end) {
  return {area.begin() + static_cast<std::ptrdiff_t>(first * 16),
          area.begin() + static_cast<std::ptrdiff_t>(end * 16)};
}

const std::string kLineMode = Upload("A 00 00 00 00 10 00 03 00, -d");
const std::string kRefused = "> 1B 47 < 02 80 00 00 00 00";

simulator::StandardScannerConfig Refusing(std::uint32_t transfers, std::string_view level = "B8") {
  auto config = SmallStandard(level);
  config.manners.refusedTransfers = transfers;
  return config;
}

}  // namespace

TEST_CASE("simulator: ESC G is answered by the first block, each block but the last by ACK") {
  const auto config = SmallStandard();
  StandardScanner scanner(config);
  Converse(scanner, Upload());
  const Bytes area = AreaOf(scanner, config.onBed);
  Conversation talk(scanner);
  Converse(scanner, "> 1B 47 < 02 00 10 00 04 00");
  CHECK(talk.Read(64) == Lines(area, 0, 4));
  Converse(scanner, "> 06 < 02 00 10 00 04 00");
  CHECK(talk.Read(64) == Lines(area, 4, 8));
  Converse(scanner, "> 06 < 02 20 10 00 02 00");
  CHECK(talk.Read(32) == Lines(area, 8, 10));
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: a page of whole blocks marks its last one") {
  StandardScanner scanner(SmallStandard());
  Converse(scanner, Upload("A 00 00 00 00 10 00 08 00"));
  CHECK(StandardScanAll(scanner).size() == 8 * 16);
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: the same standard scan can be started again and again") {
  StandardScanner scanner(SmallStandard());
  Converse(scanner, Upload());
  const Bytes first = StandardScanAll(scanner);
  CHECK(StandardScanAll(scanner) == first);
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: without ESC d a header comes first, then each line with one of four bytes") {
  const auto config = SmallStandard("B3");
  StandardScanner scanner(config);
  Converse(scanner, kLineMode);
  const Bytes area = AreaOf(scanner, config.onBed);
  Conversation talk(scanner);
  Converse(scanner, "> 1B 47 < 02 00 10 00 01 00");
  for (std::size_t line = 0; line < 3; ++line) {
    talk.Expect(line == 2 ? "02 20 10 00" : "02 00 10 00");
    CHECK(talk.Read(16) == Lines(area, line, line + 1));
    if (line < 2) talk.Send("06");
  }
  CHECK(talk.ReadInVain(1).empty());
}

TEST_CASE("simulator: CAN after a standard block is acknowledged and ends the transfer") {
  const std::string cancel = "> 18 < 06 > 1B 46 < 02 00 00 00";
  Play(SmallStandard(), Upload() + "> 1B 47 * 70" + cancel);
  Play(SmallStandard(), kLineMode + "> 1B 47 * 26" + cancel);
}

TEST_CASE("simulator: ACK or CAN after the last standard block is a violation") {
  for (const char* answer : {"06", "18"}) {
    StandardScanner scanner(SmallStandard());
    Converse(scanner, Upload());
    StandardScanAll(scanner);
    Conversation(scanner).Send(answer);
    CheckViolation(scanner, "expected a command");
  }
}

TEST_CASE("simulator: a command within a standard block breaks it off, and is a violation") {
  PlayWrongly(SmallStandard(), Upload() + "> 1B 47 * 26 > 1B 46 < 02 00 00 00",
              "sent 1B 46 before reading");
}

TEST_CASE("simulator: ESC G without a complete scan asks again, and is refused once more") {
  StandardScanner scanner(SmallStandard());
  Converse(scanner, "+ d 04" + kRefused + kRefused);
  CheckNoViolations(scanner);
  CHECK(scanner.Refusals().size() == 2);
}

TEST_CASE("simulator: a refused start is asked for again, and the first block is its answer") {
  StandardScanner scanner(Refusing(1));
  Converse(scanner, Upload() + kRefused);
  CHECK(StandardScanAll(scanner).size() == 160);
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: in line mode a repeated start is answered by the first line at once") {
  Play(Refusing(1, "B3"), kLineMode + kRefused + "> 1B 47 < 02 00 10 00 * 16");
}

TEST_CASE("simulator: in line mode a second refusal is a header that begins with NAK") {
  Play(Refusing(3, "B3"), kLineMode + kRefused + "> 1B 47 < 15 80 00 00" + kRefused);
}

TEST_CASE("simulator: a new area begins with a first start") {
  StandardScanner scanner(Refusing(1, "B3"));
  Converse(scanner, kLineMode + kRefused + kLineMode);
  CHECK(StandardScanAll(scanner, true).size() == 48);
}

TEST_CASE("simulator: behind a reset a start is a first one") {
  Play(Refusing(1, "B3"), kRefused + "> 1B 40 < 06" + kRefused);
}

TEST_CASE("simulator: colour modes have their depths") {
  for (const auto& [format, why] : std::initializer_list<std::pair<const char*, const char*>>{
           {"C 02, D 08", "no planes of 8 bits"},
           {"C 01, D 0C", "no planes of 12 bits"},
           {"C 00, D 03", "planes only"},
           {"C 13, D 03", "planes only"},
           {"C 13, D 01", "no colour in samples of 1 bit"}}) {
    PlayRefused(SmallStandard(), Upload(format) + kRefused, why);
  }
}

TEST_CASE("simulator: a line that is too long for its header is refused") {
  auto config = SmallStandard();
  config.identity.flatbed = {32000, 10};
  PlayRefused(config, Upload("C 13, A 00 00 00 00 58 55 0A 00") + kRefused,
              "a line of 65544 bytes does not fit a block");
  Play(config, Upload("C 13, A 00 00 00 00 50 55 0A 00") + "> 1B 47 < 02 00 F0 FF 04 00");
}

TEST_CASE("simulator: what the standard scanner delivers is the area, whatever form and place") {
  struct Row {
    std::string_view scan;
    std::size_t imageBytes;
  };
  for (const Row& row :
       {Row{"A 00 00 00 00 C8 00 C8 00, C 13, d 07, K 00", 600 * 200},
        Row{"A 03 00 04 00 28 00 21 00, R 32 00 32 00, H C8 C8, D 01, d 02, K 00", 5 * 33},
        Row{"A 01 00 01 00 18 00 09 00, R 4B 00 4B 00, D 04, d 01, K 01", 12 * 9},
        Row{"A 09 00 09 00 18 00 08 00, C 02, D 01, d 03, K 00", 9 * 8},
        Row{"A 00 00 07 00 28 00 14 00, C 02, D 03, d FF, K 01", 60 * 20},
        Row{"A 00 00 07 00 08 00 14 00, R 3C 00 3C 00, H 32 32, C 01, D 03, K 00", 12 * 20},
        Row{"A 05 00 00 00 10 00 09 00, H 96 96, C 13, D 04, K 01", 32 * 9},
        Row{"A 05 00 00 00 10 00 09 00, C 20, D 0C, K 00", 32 * 9},
        Row{"A B8 00 BE 00 10 00 0A 00, C 13, D 0C, d 02, K 01", 96 * 10}}) {
    CAPTURE(row.scan);
    const auto config = SmallStandard();
    StandardScanner scanner(config);
    Converse(scanner, Upload(row.scan));
    const Bytes image = StandardScanAll(scanner);
    CHECK(image.size() == row.imageBytes);
    CHECK(image == AreaOf(scanner, config.onBed));
    CheckNoViolations(scanner);
  }
}

TEST_CASE("simulator: standard gamma tables come into force with ESC Z, and go with the next") {
  StandardScanner scanner(SmallStandard());
  Converse(scanner, Upload());
  const Bytes plain = StandardScanAll(scanner);
  std::string inverting = "+ z 4D";
  for (int i = 255; i >= 0; --i) inverting += ToHex({static_cast<std::uint8_t>(i)});
  Converse(scanner, inverting);
  CHECK(StandardScanAll(scanner) == plain);
  Converse(scanner, "+ Z 04");
  const Bytes inverted = StandardScanAll(scanner);
  for (std::size_t i = 0; i < plain.size(); ++i) CHECK(inverted[i] == 255 - plain[i]);
  Converse(scanner, "+ Z 01");
  CHECK(StandardScanAll(scanner) == plain);
}
