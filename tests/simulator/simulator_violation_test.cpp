#include <doctest/doctest.h>

#include "tests/simulator/simulator_conversation.h"

// What the simulated scanner holds against a driver.

using namespace simulator_test;
using simulator::ExtendedScanner;

namespace {

void PlayWrongly(std::string_view conversation, std::string_view words) {
  simulator_test::PlayWrongly(SmallFlatbed(), conversation, words);
}

// Blocks of 64, 64 and 32 bytes, a status byte behind each.
const std::string kStart = kSetUp + "> 1C 47 < 02 00 * 12";
const std::string kScan = kStart + "* 64 < 00 > 06 * 64 < 00 > 06 * 32 < 00";

}  // namespace

TEST_CASE("simulator: an unknown command is a violation and answered with NAK") {
  ExtendedScanner scanner(SmallFlatbed());
  Converse(scanner, "> 1C 58 < 15");
  CheckViolation(scanner, "expected a command that the scanner knows, got FS X");
  CheckRefusal(scanner, "unknown command FS X");
}

TEST_CASE("simulator: a letter that cannot be printed is named in hexadecimal digits") {
  PlayWrongly("> 1B 07", "got ESC 07");
}

TEST_CASE("simulator: a byte that begins no command is a violation and gets no answer") {
  PlayWrongly("> 06", "expected a command, got 06");
}

TEST_CASE("simulator: CAN outside a transfer is a violation") {
  PlayWrongly(kScan + "> 18", "expected a command, got 18");
}

TEST_CASE("simulator: ACK after the last block is a violation") {
  PlayWrongly(kScan + "> 06", "expected a command, got 06");
}

TEST_CASE("simulator: a command in place of the answer to a block is a violation, and served") {
  PlayWrongly(kStart + "* 65 > 06 * 65 > 1C 46 * 16",
              "expected ACK or CAN after block 1, got 1C 46");
}

TEST_CASE("simulator: sending before the scanner's answer was read is a violation") {
  PlayWrongly("> 1B 65 > 00 < 06 06", "sent 00 before reading the scanner's 06");
}

TEST_CASE("simulator: sending ACK before the block was read to its end is a violation") {
  PlayWrongly(kStart + "* 64 > 06 < 00 * 65", "sent 06 before reading the scanner's 00");
}

TEST_CASE("simulator: a command in the midst of a block is a violation, and breaks it off") {
  PlayWrongly(kStart + "* 3 > 1C 46 < 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00" + kScan,
              "sent 1C 46 before reading the scanner's");
}

TEST_CASE("simulator: a reset drops what was not read, and says so") {
  PlayWrongly("> 1C 49 > 1B 40 < 06",
              "sent 1B 40 before reading the scanner's 42 38 00 00 64 00 00 00 ... (80");
}

TEST_CASE("simulator: reading more than the scanner says fails, delivers it, and is a violation") {
  PlayWrongly("> 1B 40 ! 2 06", "read 2 bytes where the scanner has 1 to say");
}

TEST_CASE("simulator: reading nothing succeeds") {
  Play(SmallFlatbed(), "* 0");
}

TEST_CASE("simulator: FS G without an accepted parameter block is a violation and refused") {
  ExtendedScanner scanner(SmallFlatbed());
  Converse(scanner, "> 1C 47 < 02 80 00 00 00 00 00 00 00 00 00 00 00 00");
  CheckViolation(scanner, "expected FS W with an accepted parameter block before FS G");
  CheckRefusal(scanner, "no parameter block");
}

TEST_CASE("simulator: the reserved bytes of the parameter block must be 0") {
  PlayWrongly(SetUpWith("40: 05"),
              "expected 00 in the reserved byte 40 of the parameter block, got 05");
}
