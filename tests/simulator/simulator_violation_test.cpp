#include <doctest/doctest.h>

#include "simulator/extended/extended_scanner.h"
#include "tests/simulator/simulator_conversation.h"

// What the simulated scanner holds against a driver.

using namespace simulator_test;
using simulator::ExtendedScanner;

TEST_CASE("simulator: an unknown command is a violation and answered with NAK") {
  ExtendedScanner scanner(SmallFlatbed());
  SendAndExpect(scanner, "1C 58", "15");
  CheckViolation(scanner, "expected a command that the scanner knows, got FS X");
  CheckRefusal(scanner, "unknown command FS X");
}

TEST_CASE("simulator: a letter that cannot be printed is named in hexadecimal digits") {
  ExtendedScanner scanner(SmallFlatbed());
  Conversation(scanner).Send("1B 07");
  CheckViolation(scanner, "got ESC 07");
}

TEST_CASE("simulator: a byte that begins no command is a violation and gets no answer") {
  ExtendedScanner scanner(SmallFlatbed());
  Conversation talk(scanner);
  talk.Send("06");
  CheckViolation(scanner, "expected a command, got 06");
}

TEST_CASE("simulator: CAN outside a transfer is a violation") {
  ExtendedScanner scanner(SmallFlatbed());
  Conversation talk(scanner);
  ScanWith(scanner, ParameterBlock(), 16);
  talk.Send("18");
  CheckViolation(scanner, "expected a command, got 18");
}

TEST_CASE("simulator: ACK after the last block is a violation") {
  ExtendedScanner scanner(SmallFlatbed());
  ScanWith(scanner, ParameterBlock(), 16);
  Conversation(scanner).Send("06");
  CheckViolation(scanner, "expected a command, got 06");
}

TEST_CASE("simulator: a command in place of the answer to a block is a violation, and served") {
  ExtendedScanner scanner(SmallFlatbed());
  Conversation talk(scanner);
  talk.SendAcknowledged("1C 57", ParameterBlock());
  talk.Send("1C 47");
  talk.Read(14 + 65);
  talk.Send("06");
  talk.Read(65);
  talk.Send("1C 46");
  CheckViolation(scanner, "expected ACK or CAN after block 1, got 1C 46");
  talk.Read(16);
}

TEST_CASE("simulator: sending before the scanner's answer was read is a violation") {
  ExtendedScanner scanner(SmallFlatbed());
  Conversation talk(scanner);
  talk.Send("1B 65");
  talk.Send("00");
  CheckViolation(scanner, "sent 00 before reading the scanner's 06");
  talk.Expect("06 06");
}

TEST_CASE("simulator: sending ACK before the block was read to its end is a violation") {
  ExtendedScanner scanner(SmallFlatbed());
  Conversation talk(scanner);
  talk.SendAcknowledged("1C 57", ParameterBlock());
  talk.Send("1C 47");
  talk.Read(14 + 64);
  talk.Send("06");
  CheckViolation(scanner, "sent 06 before reading the scanner's 00");
  talk.Expect("00");
  talk.Read(65);
}

TEST_CASE("simulator: a command in the midst of a block is a violation, and breaks it off") {
  ExtendedScanner scanner(SmallFlatbed());
  Conversation talk(scanner);
  talk.SendAcknowledged("1C 57", ParameterBlock());
  talk.Send("1C 47");
  talk.Read(14 + 3);
  talk.Send("1C 46");
  talk.Expect("00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
  CheckViolation(scanner, "sent 1C 46 before reading the scanner's");
  CHECK(ScanWith(scanner, ParameterBlock(), 16).size() == 160);
}

TEST_CASE("simulator: a reset drops what was not read, and says so") {
  ExtendedScanner scanner(SmallFlatbed());
  Conversation talk(scanner);
  talk.Send("1C 49");
  talk.Send("1B 40");
  talk.Expect("06");
  CheckViolation(scanner,
                 "sent 1B 40 before reading the scanner's 42 38 00 00 64 00 00 00 ... (80");
}

TEST_CASE("simulator: reading more than the scanner says fails, delivers it, and is a violation") {
  ExtendedScanner scanner(SmallFlatbed());
  Conversation talk(scanner);
  talk.Send("1B 40");
  CHECK(talk.ReadInVain(2) == FromHex("06"));
  CheckViolation(scanner, "read 2 bytes where the scanner has 1 to say");
}

TEST_CASE("simulator: reading nothing succeeds") {
  ExtendedScanner scanner(SmallFlatbed());
  CHECK(Conversation(scanner).Read(0).empty());
  CheckNoViolations(scanner);
}

TEST_CASE("simulator: FS G without an accepted parameter block is a violation and refused") {
  ExtendedScanner scanner(SmallFlatbed());
  SendAndExpect(scanner, "1C 47", "02 80 00 00 00 00 00 00 00 00 00 00 00 00");
  CheckViolation(scanner, "expected FS W with an accepted parameter block before FS G");
  CheckRefusal(scanner, "no parameter block");
}

TEST_CASE("simulator: the reserved bytes of the parameter block must be 0") {
  ExtendedScanner scanner(SmallFlatbed());
  Bytes block = ParameterBlock();
  block[40] = 5;
  Conversation(scanner).SendAcknowledged("1C 57", block);
  CheckViolation(scanner, "expected 00 in the reserved byte 40 of the parameter block, got 05");
}
