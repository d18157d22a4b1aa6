#include <doctest/doctest.h>

#include <set>
#include <stdexcept>
#include <string>

#include "simulator/extended/extended_scanner.h"
#include "tests/simulator/simulator_conversation.h"

// Each defect, alone.

using namespace simulator_test;
using simulator::Defects;
using simulator::ExtendedScanner;

namespace {

ExtendedScanner With(void (*spoil)(Defects&)) {
  auto config = SmallFlatbed();
  spoil(config.defects);
  return ExtendedScanner(config);
}

// Two blocks of 64 bytes and a last one of 32, unless a defect changes them.
Conversation Started(ExtendedScanner& scanner, std::string_view header) {
  Conversation talk(scanner);
  talk.SendAcknowledged("1C 57", ParameterBlock());
  talk.Send("1C 47");
  talk.Expect(header);
  return talk;
}

constexpr std::string_view kHeader = "02 00 40 00 00 00 02 00 00 00 20 00 00 00";
constexpr std::string_view kRefused = "02 80 00 00 00 00 00 00 00 00 00 00 00 00";

}  // namespace

TEST_CASE("simulator: every defect has a name of its own and a sentence") {
  std::set<std::string> names;
  for (const simulator::DefectRow& row : simulator::DefectTable()) {
    CHECK(names.emplace(row.name).second);
    CHECK(row.sentence.ends_with('.'));
  }
  CHECK(names.size() == 27);
}

TEST_CASE("simulator: a defect is switched on by its name, with a number or a letter") {
  Defects defects;
  SwitchOn(defects, "no-probe-reply");
  SwitchOn(defects, "jam-at-line=200");
  SwitchOn(defects, "nak-command=G");
  CHECK(defects.noProbeReply);
  CHECK(defects.jamAtLine == 200U);
  CHECK(defects.nakCommand == 'G');
}

TEST_CASE("simulator: an unknown defect or a wrong value is an error that says so") {
  Defects defects;
  CHECK_THROWS_WITH_AS(SwitchOn(defects, "rust"),
                       doctest::Contains("\"rust\"; there are: no-probe-reply"),
                       std::invalid_argument);
  CHECK_THROWS_WITH_AS(SwitchOn(defects, "jam-at-line"), doctest::Contains("needs a number"),
                       std::invalid_argument);
  CHECK_THROWS_WITH_AS(SwitchOn(defects, "jam-at-line=7x"), doctest::Contains("got \"7x\""),
                       std::invalid_argument);
  CHECK_THROWS_WITH_AS(SwitchOn(defects, "not-ready=1"), doctest::Contains("has no value"),
                       std::invalid_argument);
}

TEST_CASE("simulator: no-probe-reply is silence, and waiting for it no violation") {
  auto scanner = With([](Defects& d) { d.noProbeReply = true; });
  Conversation(scanner).Send("1B 49");
  CHECK(Conversation(scanner).ReadInVain(4).empty());
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: probe-reply-without-stx is four bytes that begin with NAK") {
  auto scanner = With([](Defects& d) { d.probeReplyWithoutStx = true; });
  SendAndExpect(scanner, "1B 49", "15 02 19 00");
  CHECK(Conversation(scanner).ReadInVain(25).empty());
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: probe-reply-bytes announces and carries so many bytes") {
  auto scanner = With([](Defects& d) { d.probeReplyBytes = 300; });
  SendAndExpect(scanner, "1B 49", "02 02 2C 01");
  CHECK(Conversation(scanner).Read(300).back() == 0);
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: a driver that the probe reply misled may send what the scanner knows not") {
  for (auto* spoil : {+[](Defects& d) { d.noProbeReply = true; },
                      +[](Defects& d) { d.probeReplyWithoutStx = true; },
                      +[](Defects& d) { d.nakCommand = 'I'; }}) {
    auto scanner = With(spoil);
    SendAndExpect(scanner, "1B 3F", "15");
    CHECK(Conversation(scanner).ReadInVain(3).empty());
    CheckNoViolations(scanner);
  }
}

TEST_CASE("simulator: a driver that does not read a probe reply of a wrong size is excused") {
  auto scanner = With([](Defects& d) { d.probeReplyBytes = 300; });
  SendAndExpect(scanner, "1B 49", "02 02 2C 01");
  SendAndExpect(scanner, "1B 40", "06");
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: reply-without-stx is four bytes that begin with NAK") {
  auto scanner = With([](Defects& d) { d.replyWithoutStx = true; });
  SendAndExpect(scanner, "1B 71", "15 00 02 00");
  CHECK(Conversation(scanner).ReadInVain(2).empty());
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: status-unreadable is silence") {
  auto scanner = With([](Defects& d) { d.statusUnreadable = true; });
  Conversation(scanner).Send("1C 46");
  CHECK(Conversation(scanner).ReadInVain(16).empty());
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: nak-command answers that letter with a single NAK") {
  auto scanner = With([](Defects& d) { d.nakCommand = 'W'; });
  SendAndExpect(scanner, "1C 57", "15");
  SendAndExpect(scanner, "1B 40", "06");
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: nak-command to a query ends its answer, and waiting for more is excused") {
  auto scanner = With([](Defects& d) { d.nakCommand = 'F'; });
  Conversation(scanner).Send("1C 46");
  CHECK(Conversation(scanner).ReadInVain(16) == FromHex("15"));
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: nak-parameters acknowledges the letter and refuses its block") {
  auto scanner = With([](Defects& d) { d.nakParameters = 'W'; });
  SendAndExpect(scanner, "1C 57", "06");
  Conversation(scanner).Send(ParameterBlock());
  Conversation(scanner).Expect("15");
  CHECK_FALSE(scanner.Request());
}

TEST_CASE("simulator: late-nak puts the answers out of step until a reset") {
  auto scanner = With([](Defects& d) { d.lateNak = 'e'; });
  Conversation talk(scanner);
  talk.SendAcknowledged("1B 65", FromHex("00"));
  SendAndExpect(scanner, "1C 46", "15 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
  SendAndExpect(scanner, "1C 46", "00");
  SendAndExpect(scanner, "1B 40", "06");
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: warm-up lasts for so many status replies and refuses transfers") {
  auto scanner = With([](Defects& d) { d.warmUpPolls = 2; });
  Conversation talk = Started(scanner, kRefused);
  for (const char* status : {"02", "02", "00", "00"}) {
    talk.Send("1C 46");
    talk.Expect(status);
    talk.Read(15);
  }
  Started(scanner, kHeader);
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: not-ready and fatal-error are bits 40 and 80, and refuse transfers") {
  auto notReady = With([](Defects& d) { d.notReady = true; });
  SendAndExpect(notReady, "1C 46", "40 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
  Started(notReady, kRefused);
  auto fatal = With([](Defects& d) { d.fatalError = true; });
  SendAndExpect(fatal, "1C 46", "80 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
  Started(fatal, kRefused);
}

TEST_CASE("simulator: header-without-stx begins with NAK, and no data follow") {
  auto scanner = With([](Defects& d) { d.headerWithoutStx = true; });
  Conversation talk = Started(scanner, "15 00 00 00 00 00 00 00 00 00 00 00 00 00");
  CHECK(talk.ReadInVain(1).empty());
}

TEST_CASE("simulator: announced-block-bytes is what full blocks have, cut or filled") {
  auto longer = With([](Defects& d) { d.announcedBlockBytes = 100000; });
  Conversation talk = Started(longer, "02 00 A0 86 01 00 02 00 00 00 20 00 00 00");
  CHECK(talk.Read(100000).back() == 0xFF);
  talk.Expect("00");
  talk.Send("06");
  CheckNoViolations(longer);
  auto shorter = With([](Defects& d) { d.announcedBlockBytes = 3; });
  Conversation second = Started(shorter, "02 00 03 00 00 00 02 00 00 00 20 00 00 00");
  second.Read(3);
  second.Expect("00");
}

TEST_CASE("simulator: a driver that gives up on wrong block sizes is excused") {
  auto scanner = With([](Defects& d) { d.announcedBlockBytes = 0xFFFFFFFF; });
  Started(scanner, "02 00 FF FF FF FF 02 00 00 00 20 00 00 00");
  SendAndExpect(scanner, "1C 46", "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: announced-last-block-bytes is what the last block has") {
  auto scanner = With([](Defects& d) { d.announcedLastBlockBytes = 40; });
  CHECK(ScanWith(scanner, ParameterBlock(), 1).size() == 64 + 64 + 40);
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: block-longer-by sends more than announced, and what stays is excused") {
  auto scanner = With([](Defects& d) { d.blockLongerBy = 2; });
  Conversation talk = Started(scanner, kHeader);
  talk.Read(64);
  talk.Expect("FF");
  talk.Send("06");
  talk.Expect("FF 00");
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: a driver that reads on behind a longer block is excused") {
  auto scanner = With([](Defects& d) { d.blockLongerBy = 1; });
  Conversation talk = Started(scanner, kHeader);
  talk.Read(65);
  talk.Send("1C 46");
  talk.Read(16);
  CHECK(talk.ReadInVain(65).empty());
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: last-block-shorter-by ends early, and waiting for the rest is excused") {
  auto scanner = With([](Defects& d) { d.lastBlockShorterBy = 5; });
  Conversation talk = Started(scanner, kHeader);
  for (int block = 0; block < 2; ++block) {
    talk.Read(65);
    talk.Send("06");
  }
  CHECK(talk.ReadInVain(33).size() == 28);
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: error-at-block ends the transfer, and the status knows of no cause") {
  auto scanner = With([](Defects& d) { d.errorAtBlock = 1; });
  Conversation talk = Started(scanner, kHeader);
  talk.Read(64);
  talk.Expect("00");
  talk.Send("06");
  talk.Read(64);
  talk.Expect("80");
  SendAndExpect(scanner, "1C 46", "00");
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: fatal-at-block reports a fatal error from then on") {
  auto scanner = With([](Defects& d) { d.fatalAtBlock = 0; });
  SendAndExpect(scanner, "1C 46", "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
  Conversation talk = Started(scanner, kHeader);
  talk.Read(64);
  talk.Expect("80");
  SendAndExpect(scanner, "1C 46", "80");
}
