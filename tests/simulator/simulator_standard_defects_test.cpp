#include <doctest/doctest.h>

#include "tests/simulator/simulator_standard_conversation.h"

// Each defect on the standard scanner, alone.

using namespace simulator_test;
using simulator::StandardScanner;

namespace {

// Two blocks of 4 lines and a last one of 2, unless a defect changes them.
const std::string kStart = Upload() + "> 1B 47";
const std::string kStarted = kStart + "< 02 00 10 00 04 00";
const std::string kRefused = kStart + "< 02 80 00 00 00 00";

void PlayWith(std::string_view defects, std::string_view conversation) {
  Play(Spoiled(SmallStandard(), defects), conversation);
}

}  // namespace

TEST_CASE("simulator: standard defects of the reply to ESC I") {
  PlayWith("no-probe-reply", "> 1B 49 ! 4");
  PlayWith("probe-reply-without-stx", "> 1B 49 < 15 00 0D 00");
  PlayWith("probe-reply-bytes=3", "> 1B 49 < 02 00 03 00 42 38 52");
}

TEST_CASE("simulator: standard replies without STX are four bytes that begin with NAK") {
  PlayWith("reply-without-stx",
           "> 1B 3F < 15 00 18 00 > 1B 46 < 15 00 00 00"
           "> 1B 66 < 15 00 0B 00 > 1B 71 < 15 00 02 00 ! 2");
}

TEST_CASE("simulator: status-unreadable silences both status queries") {
  PlayWith("status-unreadable", "> 1B 46 ! 4 > 1B 66 ! 4");
}

TEST_CASE("simulator: nak-command and nak-parameters refuse a standard command") {
  PlayWith("nak-command=A", "> 1B 41 < 15");
  StandardScanner scanner(Spoiled(SmallStandard(), "nak-parameters=C"));
  Converse(scanner, "- C 00");
  CHECK_FALSE(scanner.Parameters('C'));
}

TEST_CASE("simulator: a driver that goes on without an accepted ESC d is excused") {
  PlayWith("nak-parameters=d", Upload("-d") + "- d 04 > 1B 47 < 02 00 10 00 01 00 > 1B 46");
}

TEST_CASE("simulator: behind a late NAK nothing is a violation until a reset") {
  StandardScanner scanner(Spoiled(SmallStandard(), "late-nak=Z"));
  Converse(scanner, "+ Z 01 > 1B 4C < 15 > 1B 46 < 06 15");
  CheckNoViolations(scanner);
  Converse(scanner, "> 1B 40 < 06 > 18");
  CheckViolation(scanner, "expected a command, got 18");
}

TEST_CASE("simulator: a standard scanner warms up for so many replies to ESC f") {
  PlayWith("warm-up=1", "> 1B 46 < 02 02 00 00" + kRefused +
                            "> 1B 66 < 02 00 0B 00  02 00 00 00 00 00 00 00 00 00 00"
                            "> 1B 66 < 02 00 0B 00  00 00 00 00 00 00 00 00 00 00 00" +
                            kStarted);
}

TEST_CASE("simulator: below level B4 the replies to ESC F count") {
  Play(Spoiled(SmallStandard("B3"), "warm-up=1"), "> 1B 46 < 02 02 00 00 > 1B 46 < 02 00 00 00");
}

TEST_CASE("simulator: not-ready and fatal-error are in both standard status replies") {
  PlayWith("not-ready",
           "> 1B 46 < 02 40 00 00"
           "> 1B 66 < 02 00 0B 00  40 00 00 00 00 00 00 00 00 00 00" +
               kRefused);
  PlayWith("fatal-error",
           "> 1B 46 < 02 80 00 00"
           "> 1B 66 < 02 80 0B 00  80 00 00 00 00 00 00 00 00 00 00" +
               kRefused);
}

TEST_CASE("simulator: a standard header without STX is followed by nothing") {
  PlayWith("header-without-stx", kStart + "< 15 00 10 00 04 00 ! 64");
}

TEST_CASE("simulator: without STX a repeated start in line mode has the header of a line") {
  auto config = Spoiled(SmallStandard("B3"), "header-without-stx");
  config.manners.refusedTransfers = 1;
  Play(config, Upload("-d") + "> 1B 47 < 02 80 00 00 00 00 > 1B 47 < 15 00 10 00 ! 16");
}

TEST_CASE("simulator: announced-line-bytes is what lines have, cut or filled") {
  PlayWith("announced-line-bytes=20", kStart + "< 02 00 14 00 04 00 * 16 < FF FF FF FF * 60");
  PlayWith("announced-line-bytes=3", kStart + "< 02 00 03 00 04 00 * 12 > 06 < 02 00 03 00 04 00");
}

TEST_CASE("simulator: announced-lines is what full blocks have, cut or filled") {
  PlayWith("announced-lines=6", kStart + "< 02 00 10 00 06 00 * 95 < FF");
  PlayWith("announced-lines=0", kStart + "< 02 00 10 00 00 00 > 1B 46 < 02 00 00 00");
}

TEST_CASE("simulator: a driver that does not read a block of a wrong size is excused") {
  PlayWith("announced-lines=65535", kStart + "< 02 00 10 00 FF FF > 1B 46 < 02 00 00 00");
}

TEST_CASE("simulator: a standard block that is longer puts the next header out of place") {
  PlayWith("block-longer-by=2", kStarted + "* 64 > 06 < FF FF 02 00 10 00");
}

TEST_CASE("simulator: the last standard block may be shorter than announced") {
  StandardScanner scanner(Spoiled(SmallStandard(), "last-block-shorter-by=5"));
  Converse(scanner, kStarted + "* 64 > 06 * 6 * 64 > 06 < 02 20 10 00 02 00");
  CHECK(Conversation(scanner).ReadInVain(32).size() == 27);
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: the last standard block may be unmarked, and is answered then") {
  PlayWith("last-block-unmarked",
           kStarted + "* 64 > 06 * 70 > 06 < 02 00 10 00 02 00 * 32 > 06 ! 6");
}

TEST_CASE("simulator: error-at-block is a header without lines, fatal-at-block stays") {
  PlayWith("error-at-block=0", kStart + "< 02 80 10 00 00 00 > 1B 46 < 02 00 00 00");
  PlayWith("fatal-at-block=1", kStarted + "* 64 > 06 < 02 80 10 00 00 00 > 1B 46 < 02 80 00 00");
}
