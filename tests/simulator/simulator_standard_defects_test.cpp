#include <doctest/doctest.h>

#include "tests/simulator/simulator_standard_conversation.h"

// Each defect on the standard scanner, alone.

using namespace simulator_test;
using simulator::Defects;
using simulator::StandardScanner;

namespace {

StandardScanner With(void (*spoil)(Defects&), std::string_view level = "B8") {
  auto config = SmallStandard(level);
  spoil(config.defects);
  return StandardScanner(config);
}

// Two blocks of 4 lines and a last one of 2, unless a defect changes them.
Conversation Started(StandardScanner& scanner, std::string_view header) {
  Upload(scanner, {});
  Conversation talk(scanner);
  talk.Send("1B 47");
  talk.Expect(header);
  return talk;
}

constexpr std::string_view kHeader = "02 00 10 00 04 00";
constexpr std::string_view kRefused = "02 80 00 00 00 00";

}  // namespace

TEST_CASE("simulator: standard defects of the reply to ESC I") {
  auto silent = With([](Defects& d) { d.noProbeReply = true; });
  Conversation(silent).Send("1B 49");
  CHECK(Conversation(silent).ReadInVain(4).empty());
  CheckNoViolations(silent);
  auto wrong = With([](Defects& d) { d.probeReplyWithoutStx = true; });
  SendAndExpect(wrong, "1B 49", "15 00 0D 00");
  auto cut = With([](Defects& d) { d.probeReplyBytes = 3; });
  SendAndExpect(cut, "1B 49", "02 00 03 00 42 38 52");
}

TEST_CASE("simulator: standard replies without STX are four bytes that begin with NAK") {
  auto scanner = With([](Defects& d) { d.replyWithoutStx = true; });
  SendAndExpect(scanner, "1B 3F", "15 00 18 00");
  SendAndExpect(scanner, "1B 46", "15 00 00 00");
  SendAndExpect(scanner, "1B 66", "15 00 0B 00");
  SendAndExpect(scanner, "1B 71", "15 00 02 00");
  CHECK(Conversation(scanner).ReadInVain(2).empty());
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: status-unreadable silences both status queries") {
  auto scanner = With([](Defects& d) { d.statusUnreadable = true; });
  for (const char* query : {"1B 46", "1B 66"}) {
    Conversation(scanner).Send(query);
    CHECK(Conversation(scanner).ReadInVain(4).empty());
  }
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: nak-command and nak-parameters refuse a standard command") {
  auto command = With([](Defects& d) { d.nakCommand = 'A'; });
  SendAndExpect(command, "1B 41", "15");
  auto parameters = With([](Defects& d) { d.nakParameters = 'C'; });
  CheckParameters(parameters, 'C', "00", "15");
  CHECK_FALSE(parameters.Parameters('C'));
}

TEST_CASE("simulator: a driver that goes on without an accepted ESC d is excused") {
  auto scanner = With([](Defects& d) { d.nakParameters = 'd'; });
  StandardScan scan;
  scan.linesPerBlock = 0;
  Upload(scanner, scan);
  CheckParameters(scanner, 'd', "04", "15");
  SendAndExpect(scanner, "1B 47", "02 00 10 00 01 00");
  Conversation(scanner).Send("1B 46");
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: behind a late NAK nothing is a violation until a reset") {
  auto scanner = With([](Defects& d) { d.lateNak = 'Z'; });
  CheckParameters(scanner, 'Z', "01", "06");
  SendAndExpect(scanner, "1B 4C", "15");
  SendAndExpect(scanner, "1B 46", "06 15");
  CheckNoViolations(scanner);
  SendAndExpect(scanner, "1B 40", "06");
  Conversation(scanner).Send("18");
  CheckViolation(scanner, "expected a command, got 18");
}

TEST_CASE("simulator: a standard scanner warms up for so many replies to ESC f") {
  auto scanner = With([](Defects& d) { d.warmUpPolls = 1; });
  SendAndExpect(scanner, "1B 46", "02 02 00 00");
  Started(scanner, kRefused);
  SendAndExpect(scanner, "1B 66", "02 00 0B 00  02 00 00 00 00 00 00 00 00 00 00");
  SendAndExpect(scanner, "1B 66", "02 00 0B 00  00 00 00 00 00 00 00 00 00 00 00");
  Started(scanner, kHeader);
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: below level B4 the replies to ESC F count") {
  auto scanner = With([](Defects& d) { d.warmUpPolls = 1; }, "B3");
  SendAndExpect(scanner, "1B 46", "02 02 00 00");
  SendAndExpect(scanner, "1B 46", "02 00 00 00");
}

TEST_CASE("simulator: not-ready and fatal-error are in both standard status replies") {
  auto notReady = With([](Defects& d) { d.notReady = true; });
  SendAndExpect(notReady, "1B 46", "02 40 00 00");
  SendAndExpect(notReady, "1B 66", "02 00 0B 00  40 00 00 00 00 00 00 00 00 00 00");
  Started(notReady, kRefused);
  auto fatal = With([](Defects& d) { d.fatalError = true; });
  SendAndExpect(fatal, "1B 46", "02 80 00 00");
  SendAndExpect(fatal, "1B 66", "02 80 0B 00  80 00 00 00 00 00 00 00 00 00 00");
  Started(fatal, kRefused);
}

TEST_CASE("simulator: a standard header without STX is followed by nothing") {
  auto scanner = With([](Defects& d) { d.headerWithoutStx = true; });
  Conversation talk = Started(scanner, "15 00 10 00 04 00");
  CHECK(talk.ReadInVain(64).empty());
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: without STX a repeated start in line mode has the header of a line") {
  auto config = SmallStandard("B3");
  config.defects.headerWithoutStx = true;
  config.manners.refusedTransfers = 1;
  StandardScanner scanner(config);
  StandardScan scan;
  scan.linesPerBlock = 0;
  Upload(scanner, scan);
  SendAndExpect(scanner, "1B 47", "02 80 00 00 00 00");
  SendAndExpect(scanner, "1B 47", "15 00 10 00");
  CHECK(Conversation(scanner).ReadInVain(16).empty());
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: announced-line-bytes is what lines have, cut or filled") {
  auto longer = With([](Defects& d) { d.announcedLineBytes = 20; });
  Conversation talk = Started(longer, "02 00 14 00 04 00");
  const Bytes lines = talk.Read(80);
  CHECK(ToHex({lines.begin() + 16, lines.begin() + 20}) == "FF FF FF FF");
  auto shorter = With([](Defects& d) { d.announcedLineBytes = 3; });
  Conversation second = Started(shorter, "02 00 03 00 04 00");
  second.Read(12);
  second.Send("06");
  second.Expect("02 00 03 00 04 00");
  CheckNoViolations(shorter);
}

TEST_CASE("simulator: announced-lines is what full blocks have, cut or filled") {
  auto more = With([](Defects& d) { d.announcedLines = 6; });
  Conversation talk = Started(more, "02 00 10 00 06 00");
  CHECK(talk.Read(96).back() == 0xFF);
  auto none = With([](Defects& d) { d.announcedLines = 0; });
  Started(none, "02 00 10 00 00 00");
  SendAndExpect(none, "1B 46", "02 00 00 00");
  CheckNoViolations(none);
}

TEST_CASE("simulator: a driver that does not read a block of a wrong size is excused") {
  auto scanner = With([](Defects& d) { d.announcedLines = 0xFFFF; });
  Started(scanner, "02 00 10 00 FF FF");
  SendAndExpect(scanner, "1B 46", "02 00 00 00");
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: a standard block that is longer puts the next header out of place") {
  auto scanner = With([](Defects& d) { d.blockLongerBy = 2; });
  Conversation talk = Started(scanner, kHeader);
  talk.Read(64);
  talk.Send("06");
  talk.Expect("FF FF 02 00 10 00");
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: the last standard block may be shorter than announced") {
  auto scanner = With([](Defects& d) { d.lastBlockShorterBy = 5; });
  Conversation talk = Started(scanner, kHeader);
  talk.Read(64);
  talk.Send("06");
  talk.Read(6 + 64);
  talk.Send("06");
  talk.Expect("02 20 10 00 02 00");
  CHECK(talk.ReadInVain(32).size() == 27);
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: the last standard block may be unmarked, and is answered then") {
  auto scanner = With([](Defects& d) { d.lastBlockUnmarked = true; });
  Conversation talk = Started(scanner, kHeader);
  talk.Read(64);
  talk.Send("06");
  talk.Read(6 + 64);
  talk.Send("06");
  talk.Expect("02 00 10 00 02 00");
  talk.Read(32);
  talk.Send("06");
  CHECK(talk.ReadInVain(6).empty());
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: error-at-block is a header without lines, fatal-at-block stays") {
  auto error = With([](Defects& d) { d.errorAtBlock = 0; });
  Started(error, "02 80 10 00 00 00");
  SendAndExpect(error, "1B 46", "02 00 00 00");
  auto fatal = With([](Defects& d) { d.fatalAtBlock = 1; });
  Conversation talk = Started(fatal, kHeader);
  talk.Read(64);
  talk.Send("06");
  talk.Expect("02 80 10 00 00 00");
  SendAndExpect(fatal, "1B 46", "02 80 00 00");
  CheckNoViolations(fatal);
}
