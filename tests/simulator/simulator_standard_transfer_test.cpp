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

StandardScan InLineMode() {
  StandardScan scan;
  scan.height = 3;
  scan.linesPerBlock = 0;
  return scan;
}

simulator::StandardScannerConfig Refusing(std::uint32_t transfers, std::string_view level = "B8") {
  auto config = SmallStandard(level);
  config.manners.refusedTransfers = transfers;
  return config;
}

void CheckFormatRefused(std::uint8_t colorMode, std::uint8_t bits, std::string_view why) {
  StandardScanner scanner(SmallStandard());
  StandardScan scan;
  scan.colorMode = colorMode;
  scan.bits = bits;
  Upload(scanner, scan);
  Converse(scanner, "> 1B 47 < 02 80 00 00 00 00");
  CheckRefusal(scanner, why);
  CheckNoViolations(scanner);
}

}  // namespace

TEST_CASE("simulator: ESC G is answered by the first block, each block but the last by ACK") {
  const auto config = SmallStandard();
  StandardScanner scanner(config);
  Upload(scanner, {});
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
  StandardScan scan;
  scan.height = 8;
  Upload(scanner, scan);
  CHECK(StandardScanAll(scanner).size() == 8 * 16);
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: the same standard scan can be started again and again") {
  StandardScanner scanner(SmallStandard());
  Upload(scanner, {});
  const Bytes first = StandardScanAll(scanner);
  CHECK(StandardScanAll(scanner) == first);
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: without ESC d a header comes first, then each line with one of four bytes") {
  const auto config = SmallStandard("B3");
  StandardScanner scanner(config);
  Upload(scanner, InLineMode());
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
  for (const bool lineMode : {false, true}) {
    StandardScanner scanner(SmallStandard());
    Upload(scanner, lineMode ? InLineMode() : StandardScan{});
    Conversation talk(scanner);
    talk.Send("1B 47");
    talk.Read(lineMode ? 6 + 4 + 16 : 6 + 64);
    Converse(scanner, "> 18 < 06 > 1B 46 < 02 00 00 00");
    CheckNoViolations(scanner);
  }
}

TEST_CASE("simulator: ACK or CAN after the last standard block is a violation") {
  for (const char* answer : {"06", "18"}) {
    StandardScanner scanner(SmallStandard());
    Upload(scanner, {});
    StandardScanAll(scanner);
    Conversation(scanner).Send(answer);
    CheckViolation(scanner, "expected a command");
  }
}

TEST_CASE("simulator: a command within a standard block breaks it off, and is a violation") {
  StandardScanner scanner(SmallStandard());
  Upload(scanner, {});
  Converse(scanner, "> 1B 47 * 26 > 1B 46 < 02 00 00 00");
  CheckViolation(scanner, "sent 1B 46 before reading");
}

TEST_CASE("simulator: ESC G without a complete scan asks again, and is refused once more") {
  StandardScanner scanner(SmallStandard());
  CheckParameters(scanner, 'd', "04", "06");
  Converse(scanner, "> 1B 47 < 02 80 00 00 00 00 > 1B 47 < 02 80 00 00 00 00");
  CheckNoViolations(scanner);
  CHECK(scanner.Refusals().size() == 2);
}

TEST_CASE("simulator: a refused start is asked for again, and the first block is its answer") {
  StandardScanner scanner(Refusing(1));
  Upload(scanner, {});
  Converse(scanner, "> 1B 47 < 02 80 00 00 00 00");
  CHECK(StandardScanAll(scanner).size() == 160);
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: in line mode a repeated start is answered by the first line at once") {
  StandardScanner scanner(Refusing(1, "B3"));
  Upload(scanner, InLineMode());
  Converse(scanner, "> 1B 47 < 02 80 00 00 00 00 > 1B 47 < 02 00 10 00 * 16");
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: in line mode a second refusal is a header that begins with NAK") {
  StandardScanner scanner(Refusing(3, "B3"));
  Upload(scanner, InLineMode());
  Converse(scanner,
           "> 1B 47 < 02 80 00 00 00 00 > 1B 47 < 15 80 00 00 > 1B 47 < 02 80 00 00 00 00");
}

TEST_CASE("simulator: a new area begins with a first start") {
  StandardScanner scanner(Refusing(1, "B3"));
  Upload(scanner, InLineMode());
  Converse(scanner, "> 1B 47 < 02 80 00 00 00 00");
  Upload(scanner, InLineMode());
  CHECK(StandardScanAll(scanner, true).size() == 48);
}

TEST_CASE("simulator: behind a reset a start is a first one") {
  StandardScanner scanner(Refusing(1, "B3"));
  Converse(scanner, "> 1B 47 < 02 80 00 00 00 00 > 1B 40 < 06 > 1B 47 < 02 80 00 00 00 00");
}

TEST_CASE("simulator: colour modes have their depths") {
  CheckFormatRefused(0x02, 8, "no planes of 8 bits");
  CheckFormatRefused(0x01, 12, "no planes of 12 bits");
  CheckFormatRefused(0x00, 3, "planes only");
  CheckFormatRefused(0x13, 3, "planes only");
  CheckFormatRefused(0x13, 1, "no colour in samples of 1 bit");
}

TEST_CASE("simulator: a line that is too long for its header is refused") {
  auto config = SmallStandard();
  config.identity.flatbed = {32000, 10};
  StandardScanner scanner(config);
  StandardScan scan;
  scan.colorMode = 0x13;
  scan.width = 21848;
  Upload(scanner, scan);
  Converse(scanner, "> 1B 47 < 02 80 00 00 00 00");
  CheckRefusal(scanner, "a line of 65544 bytes does not fit a block");
  scan.width = 21840;
  Upload(scanner, scan);
  Converse(scanner, "> 1B 47 < 02 00 F0 FF 04 00");
}

TEST_CASE("simulator: what the standard scanner delivers is the area, whatever form and place") {
  struct Row {
    std::uint8_t mode, bits;
    std::uint16_t resolution, left, top, width, height;
    std::uint8_t zoom, linesPerBlock, mirror;
    std::uint32_t lineBytes;
  };
  for (const Row& row :
       {Row{0x13, 8, 100, 0, 0, 200, 200, 100, 7, 0, 600},
        Row{0x00, 1, 50, 3, 4, 40, 33, 200, 2, 0, 5}, Row{0x00, 4, 75, 1, 1, 24, 9, 100, 1, 1, 12},
        Row{0x02, 1, 100, 9, 9, 24, 8, 100, 3, 0, 9},
        Row{0x02, 3, 100, 0, 7, 40, 20, 100, 255, 1, 60},
        Row{0x01, 3, 60, 0, 7, 8, 20, 50, 4, 0, 12}, Row{0x13, 4, 100, 5, 0, 16, 9, 150, 4, 1, 32},
        Row{0x20, 12, 100, 5, 0, 16, 9, 100, 4, 0, 32},
        Row{0x13, 12, 100, 184, 190, 16, 10, 100, 2, 1, 96}}) {
    const auto config = SmallStandard();
    StandardScanner scanner(config);
    Upload(scanner, {row.mode, row.bits, row.resolution, row.zoom, row.left, row.top, row.width,
                     row.height, row.linesPerBlock});
    CheckParameters(scanner, 'K', row.mirror != 0 ? "01" : "00", "06");
    const Bytes image = StandardScanAll(scanner);
    CHECK(image.size() == row.lineBytes * row.height);
    CHECK(image == AreaOf(scanner, config.onBed));
    CheckNoViolations(scanner);
  }
}

TEST_CASE("simulator: standard gamma tables come into force with ESC Z, and go with the next") {
  StandardScanner scanner(SmallStandard());
  Upload(scanner, {});
  const Bytes plain = StandardScanAll(scanner);
  Bytes table{'M'};
  for (unsigned i = 0; i < 256; ++i) table.push_back(static_cast<std::uint8_t>(255 - i));
  CheckParameters(scanner, 'z', ToHex(table), "06");
  CHECK(StandardScanAll(scanner) == plain);
  CheckParameters(scanner, 'Z', "04", "06");
  const Bytes inverted = StandardScanAll(scanner);
  for (std::size_t i = 0; i < plain.size(); ++i) CHECK(inverted[i] == 255 - plain[i]);
  CheckParameters(scanner, 'Z', "01", "06");
  CHECK(StandardScanAll(scanner) == plain);
}
