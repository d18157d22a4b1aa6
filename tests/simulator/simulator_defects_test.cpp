#include <doctest/doctest.h>

#include <set>
#include <stdexcept>
#include <string>

#include "simulator/extended/extended_scanner.h"
#include "tests/simulator/simulator_conversation.h"

// Each defect, alone.

using namespace simulator_test;
using simulator::Defects;

namespace {

// Two blocks of 64 bytes and a last one of 32, unless a defect changes them.
const std::string kStart = kSetUp + "> 1C 47";
const std::string kStarted = kStart + "< 02 00 40 00 00 00 02 00 00 00 20 00 00 00";
const std::string kRefused = kStart + "< 02 80 00 00 00 00 00 00 00 00 00 00 00 00";

const std::string kSilentStatus = "> 1C 46 < 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00";

void PlayWith(std::string_view defects, std::string_view conversation) {
  Play(Spoiled(SmallFlatbed(), defects), conversation);
}

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
                       doctest::Contains("\"rust\"; docs/simulator-profiles.md lists"),
                       std::invalid_argument);
  CHECK_THROWS_WITH_AS(SwitchOn(defects, "jam-at-line"), doctest::Contains("needs a number"),
                       std::invalid_argument);
  CHECK_THROWS_WITH_AS(SwitchOn(defects, "jam-at-line=7x"), doctest::Contains("got \"7x\""),
                       std::invalid_argument);
  CHECK_THROWS_WITH_AS(SwitchOn(defects, "not-ready=1"), doctest::Contains("has no value"),
                       std::invalid_argument);
}

TEST_CASE("simulator: no-probe-reply is silence, and waiting for it no violation") {
  PlayWith("no-probe-reply", "> 1B 49 ! 4");
}

TEST_CASE("simulator: probe-reply-without-stx is four bytes that begin with NAK") {
  PlayWith("probe-reply-without-stx", "> 1B 49 < 15 02 19 00 ! 25");
}

TEST_CASE("simulator: probe-reply-bytes announces and carries so many bytes") {
  PlayWith("probe-reply-bytes=300", "> 1B 49 < 02 02 2C 01 * 299 < 00");
}

TEST_CASE("simulator: a driver that the probe reply misled may send what the scanner knows not") {
  for (const char* defect : {"no-probe-reply", "probe-reply-without-stx", "nak-command=I"}) {
    PlayWith(defect, "> 1B 3F < 15 ! 3");
  }
}

TEST_CASE("simulator: a driver that does not read a probe reply of a wrong size is excused") {
  PlayWith("probe-reply-bytes=300", "> 1B 49 < 02 02 2C 01 > 1B 40 < 06");
}

TEST_CASE("simulator: reply-without-stx is four bytes that begin with NAK") {
  PlayWith("reply-without-stx", "> 1B 71 < 15 00 02 00 ! 2");
}

TEST_CASE("simulator: status-unreadable is silence") {
  PlayWith("status-unreadable", "> 1C 46 ! 16");
}

TEST_CASE("simulator: nak-command answers that letter with a single NAK") {
  PlayWith("nak-command=W", "> 1C 57 < 15 > 1B 40 < 06");
}

TEST_CASE("simulator: nak-command to a query ends its answer, and waiting for more is excused") {
  PlayWith("nak-command=F", "> 1C 46 ! 16 15");
}

TEST_CASE("simulator: nak-parameters acknowledges the letter and refuses its block") {
  simulator::ExtendedScanner scanner(Spoiled(SmallFlatbed(), "nak-parameters=W"));
  Converse(scanner, SetUpWith("", "15"));
  CHECK_FALSE(scanner.Request());
}

TEST_CASE("simulator: late-nak puts the answers out of step until a reset") {
  PlayWith("late-nak=e",
           "+ e 00 > 1C 46 < 15 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
           "> 1C 46 < 00 > 1B 40 < 06");
}

TEST_CASE("simulator: warm-up lasts for so many status replies and refuses transfers") {
  PlayWith("warm-up=2", kRefused +
                            "> 1C 46 < 02 * 15 > 1C 46 < 02 * 15"
                            "> 1C 46 < 00 * 15 > 1C 46 < 00 * 15" +
                            kStarted);
}

TEST_CASE("simulator: not-ready and fatal-error are bits 40 and 80, and refuse transfers") {
  PlayWith("not-ready", "> 1C 46 < 40 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00" + kRefused);
  PlayWith("fatal-error", "> 1C 46 < 80 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00" + kRefused);
}

TEST_CASE("simulator: header-without-stx begins with NAK, and no data follow") {
  simulator::ExtendedScanner scanner(Spoiled(SmallFlatbed(), "header-without-stx"));
  Converse(scanner, kStart + "< 15 00 00 00 00 00 00 00 00 00 00 00 00 00 ! 1");
}

TEST_CASE("simulator: announced-block-bytes is what full blocks have, cut or filled") {
  PlayWith("announced-block-bytes=100000",
           kStart + "< 02 00 A0 86 01 00 02 00 00 00 20 00 00 00 * 99999 < FF < 00 > 06");
  PlayWith("announced-block-bytes=3",
           kStart + "< 02 00 03 00 00 00 02 00 00 00 20 00 00 00 * 3 < 00");
}

TEST_CASE("simulator: a driver that gives up on wrong block sizes is excused") {
  PlayWith("announced-block-bytes=4294967295",
           kStart + "< 02 00 FF FF FF FF 02 00 00 00 20 00 00 00" + kSilentStatus);
}

TEST_CASE("simulator: announced-last-block-bytes is what the last block has") {
  simulator::ExtendedScanner scanner(Spoiled(SmallFlatbed(), "announced-last-block-bytes=40"));
  CHECK(ScanWith(scanner, ParameterBlock(), 1).size() == 64 + 64 + 40);
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: block-longer-by sends more than announced, and what stays is excused") {
  PlayWith("block-longer-by=2", kStarted + "* 64 < FF > 06 < FF 00");
}

TEST_CASE("simulator: a driver that reads on behind a longer block is excused") {
  simulator::ExtendedScanner scanner(Spoiled(SmallFlatbed(), "block-longer-by=1"));
  Converse(scanner, kStarted + "* 65 > 1C 46 * 16");
  CHECK(Conversation(scanner).ReadInVain(65).empty());
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: last-block-shorter-by ends early, and waiting for the rest is excused") {
  simulator::ExtendedScanner scanner(Spoiled(SmallFlatbed(), "last-block-shorter-by=5"));
  Converse(scanner, kStarted + "* 65 > 06 * 65 > 06");
  CHECK(Conversation(scanner).ReadInVain(33).size() == 28);
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: error-at-block ends the transfer, and the status knows of no cause") {
  PlayWith("error-at-block=1", kStarted + "* 64 < 00 > 06 * 64 < 80 > 1C 46 < 00");
}

TEST_CASE("simulator: fatal-at-block reports a fatal error from then on") {
  PlayWith("fatal-at-block=0", kSilentStatus + kStarted + "* 64 < 80 > 1C 46 < 80");
}
