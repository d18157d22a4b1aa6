#include <doctest/doctest.h>

#include "simulator/extended/extended_scanner.h"
#include "simulator/faults/fault_injector.h"
#include "simulator/faults/fault_script.h"
#include "tests/simulator/simulator_standard_conversation.h"

// Faults on the cable: each kind, at each kind of place.

using namespace simulator_test;
using simulator::ExtendedScanner;
using simulator::Fault;
using simulator::FaultInjector;
using simulator::ReadFaults;
using simulator::StandardScanner;

namespace {

std::vector<Fault> One(const std::string& at, const std::string& action) {
  return ReadFaults(
      simulator::ParseJson("[{\"at\": {" + at + "}, \"do\": " + action + "}]", "f.json"));
}

// A small extended scanner behind a cable with one fault.
struct Desk {
  Desk(const std::string& at, const std::string& action)
      : scanner(SmallFlatbed()), cable(scanner, One(at, action)) {}

  // Without a script, but with defects.
  explicit Desk(std::string_view defects)
      : scanner(Spoiled(SmallFlatbed(), defects)), cable(scanner, {}) {}

  void Converse(std::string_view conversation) { simulator_test::Converse(cable, conversation); }

  std::int32_t TrySend(std::string_view hex) {
    Bytes bytes = FromHex(hex);
    return cable.RawWriteData(bytes.data(), static_cast<std::uint32_t>(bytes.size()), nullptr);
  }

  ExtendedScanner scanner;
  FaultInjector cable;
};

const std::string kStatusReply = "\"command\": \"FS F\"";

}  // namespace

TEST_CASE("fault: without one a scan passes as it is") {
  Desk desk("");
  desk.Converse(kSetUp);
  Conversation talk(desk.cable);
  CHECK(ScanAll(talk, 16).size() == 160);
  CheckNoViolations(desk.scanner);
}

TEST_CASE("fault: a failed read loses its bytes, and the buffer gets none") {
  Desk desk(kStatusReply, "\"fail\"");
  desk.Converse("> 1C 46 ! 16 > 1C 46 < 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
  CheckNoViolations(desk.scanner);
}

TEST_CASE("fault: a failed write does not reach the scanner") {
  Desk desk("\"command\": \"FS W\", \"part\": \"parameters\"", "\"fail\"");
  desk.Converse("> 1C 57 < 06");
  CHECK(desk.TrySend(ToHex(ParameterBlock())) == kTimeout);
  CHECK_FALSE(desk.scanner.Request().has_value());
  desk.Converse("> " + ToHex(ParameterBlock()) + "< 06");
}

TEST_CASE("fault: a read that is cut short succeeds with its first bytes") {
  Desk desk("\"command\": \"FS I\"", "{\"cut\": 3}");
  desk.Converse("> 1C 49 ~ 80 42 38 00 > 1C 46 < 00 00");
}

TEST_CASE("fault: a write that is cut short reaches the scanner in part") {
  Desk desk("\"command\": \"FS W\", \"part\": \"parameters\"", "{\"cut\": 63}");
  desk.Converse("> 1C 57 < 06");
  CHECK(desk.TrySend(ToHex(ParameterBlock())) == 0);
  CHECK_FALSE(desk.scanner.Request().has_value());
  desk.Converse("> 00");
  CHECK(desk.scanner.Request().has_value());
}

TEST_CASE("fault: an answer takes the place of the scanner's whole answer") {
  Desk desk("\"command\": \"ESC I\"", "{\"answer\": \"02 02 03 00 42 35\"}");
  desk.Converse("> 1B 49 < 02 02 03 00 ~ 3 42 35 ! 1 > 1C 46 < 00 00");
  CheckNoViolations(desk.scanner);
}

TEST_CASE("fault: an empty answer is none") {
  Desk desk(kStatusReply, "{\"answer\": \"\"}");
  desk.Converse("> 1C 46 ! 16");
}

TEST_CASE("fault: other bytes than the driver's reach the scanner") {
  Desk desk("\"command\": \"FS F\", \"part\": \"command\"", "{\"answer\": \"1B 40\"}");
  desk.Converse("> 1C 46 < 06");
}

TEST_CASE("fault: a scanner on hold reports warming up so many times, and nothing is excused") {
  Desk desk("\"command\": \"FS F\", \"occurrence\": 2", "{\"hold\": 2}");
  desk.Converse("> 1C 46 < 00 * 15 > 1C 46 < 02 * 15 > 1C 46 < 02 * 15 > 1C 46 < 00 * 15 > 06");
  CheckViolation(desk.scanner, "expected a command, got 06");
}

TEST_CASE("fault: a hold begins at any place, and is found where status stands in portions") {
  StandardScanner scanner(SmallStandard());
  FaultInjector cable(scanner, One("\"transfer\": 0", "{\"hold\": 2}"));
  Converse(cable, "> 1B 66 < 02 00 0B 00 < 02 * 10 > 1B 46 < 02 02 00 00 > 1B 46 < 02 00 00 00");
  CheckNoViolations(scanner);
}

TEST_CASE("fault: behind an unplugged cable nothing passes any more") {
  Desk desk("\"transfer\": 1", "\"unplug\"");
  desk.Converse("> 1C 46 / 16");
  CHECK(desk.TrySend("1C 46") == kUnplugged);
  desk.Converse("/ 16");
  CheckNoViolations(desk.scanner);
}

TEST_CASE("fault: transfers are counted from 0, reads and writes together") {
  Desk desk("\"transfer\": 3", "\"fail\"");
  desk.Converse("> 1C 46 * 16 > 1C 46 ! 16");
}

TEST_CASE("fault: every occurrence of a command is struck") {
  Desk desk("\"command\": \"FS F\", \"occurrence\": \"every\"", "{\"cut\": 1}");
  desk.Converse("> 1C 46 ~ 16 00 > 1C 46 ~ 16 00 > 1C 46 ~ 16 00");
}

TEST_CASE("fault: a parameter that looks like a command is none") {
  StandardScanner scanner(SmallStandard());
  FaultInjector cable(scanner, One("\"command\": \"FF\"", "\"fail\""));
  Converse(cable, "+ D 0C + d 0C");  // 12 bits, 12 lines
  CHECK(cable.Unreached() == std::vector<std::string>{"f.json:1"});
}

TEST_CASE("fault: a command of one byte is known behind a reset") {
  ExtendedScanner scanner(SmallFeeder(1));
  FaultInjector cable(scanner, One("\"command\": \"EM\"", "{\"answer\": \"15\"}"));
  Converse(cable, "> 1B 40 < 06 > 19 < 15");
}

TEST_CASE("fault: a block of an extended scan, and the driver's answer to it") {
  for (const char* at : {"\"command\": \"FS G\", \"block\": 1",
                         "\"command\": \"FS G\", \"block\": 0, \"part\": \"answer\""}) {
    Desk desk(at, "\"unplug\"");
    desk.Converse(kSetUp + "> 1C 47 * 14 * 65");
    const bool answerPasses = desk.TrySend("06") == 0;
    CHECK(answerPasses == (std::string(at).find("answer") == std::string::npos));
    desk.Converse("/ 65");
  }
}

TEST_CASE("fault: header and lines of a block of a standard scan") {
  StandardScanner scanner(SmallStandard());
  FaultInjector cable(scanner,
                      One("\"command\": \"ESC G\", \"block\": 1, \"read\": 1", "{\"cut\": 5}"));
  Converse(scanner, Upload());
  Converse(cable, "> 1B 47 * 70 > 06 < 02 00 10 00 04 00");
  CHECK(Conversation(cable).ReadWith(0, 64).size() == 5);
}

TEST_CASE("fault: what comes of a fault is excused until a reset") {
  Desk desk(kStatusReply, "\"fail\"");
  desk.Converse("> 1C 46 ! 16 > 06");
  CheckNoViolations(desk.scanner);
  desk.Converse("> 1B 40 < 06 > 06");
  CheckViolation(desk.scanner, "expected a command, got 06");
}

TEST_CASE("fault: one that was not reached is told") {
  Desk desk("\"command\": \"FS F\", \"occurrence\": 2", "\"fail\"");
  desk.Converse("> 1C 46 * 16");
  CHECK(desk.cable.Unreached() == std::vector<std::string>{"f.json:1"});
  desk.Converse("> 1C 46 ! 16");
  CHECK(desk.cable.Unreached().empty());
}

TEST_CASE("fault: unplugged-at-byte lets the bytes before it pass") {
  Desk desk("unplugged-at-byte=10");
  desk.Converse("> 1C 49 / 80 42 38 00 00 64 00 00 00");
  CHECK(desk.TrySend("06") == kUnplugged);
  CheckNoViolations(desk.scanner);
}

TEST_CASE("fault: a cable pulled out within a write brings the scanner a part of it") {
  Desk desk("unplugged-at-byte=4");
  desk.Converse("> 1B 65 < 06");
  CHECK(desk.TrySend("00 1C 46") == kUnplugged);
  Conversation(desk.scanner).Expect("06");  // the parameter came, the status query did not
  desk.Converse("/ 1");
}

TEST_CASE("fault: unplugged-at-transfer fails that transfer and all later ones") {
  Desk desk("unplugged-at-transfer=2");
  desk.Converse("> 1B 40 < 06");
  CHECK(desk.TrySend("1B") == kUnplugged);
  desk.Converse("/ 1");
  CheckNoViolations(desk.scanner);
}

TEST_CASE("fault: short-read-at-transfer succeeds once with half of the bytes") {
  Desk desk("short-read-at-transfer=0");
  desk.Converse(
      "> 1C 46 ~ 16 00 00 00 00 00 00 00 00 > 1C 46 < 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
      "00");
  CheckNoViolations(desk.scanner);
}

TEST_CASE("fault: what a short read lost is not held against the driver until a reset") {
  Desk desk("short-read-at-transfer=0");
  desk.Converse("> 1B 65 ~ 1 > 1C 46 < 15");  // FS is taken for the parameter of ESC e
  CheckNoViolations(desk.scanner);
}

TEST_CASE("fault: the standard scanner's cable may be pulled out") {
  StandardScanner scanner(Spoiled(SmallStandard(), "unplugged-at-byte=4"));
  FaultInjector cable(scanner, {});
  Converse(cable, "> 1B 46 / 4 02 00");
}

TEST_CASE("fault: of a defect named twice the last value counts") {
  Desk desk("unplugged-at-byte=1+unplugged-at-byte=4");
  desk.Converse("> 1B 40 < 06");
  CHECK(desk.TrySend("1B 40") == kUnplugged);
}

TEST_CASE("fault: a cable's own fault that does not strike is not told") {
  Desk desk("unplugged-at-byte=1000");
  CHECK(desk.cable.Unreached().empty());
}
