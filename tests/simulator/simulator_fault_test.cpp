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

constexpr std::int32_t kTimeout = static_cast<std::int32_t>(0x80070079);
constexpr std::int32_t kUnplugged = static_cast<std::int32_t>(0x8007048F);

std::vector<Fault> One(const std::string& at, const std::string& action) {
  return ReadFaults(
      simulator::ParseJson("[{\"at\": {" + at + "}, \"do\": " + action + "}]", "f.json"));
}

// A small extended scanner behind a cable with one fault.
struct Desk {
  Desk(const std::string& at, const std::string& action)
      : scanner(SmallFlatbed()), cable(scanner, One(at, action)), talk(cable) {}

  // Without a script, but with defects.
  explicit Desk(std::string_view defects)
      : scanner(Spoiled(SmallFlatbed(), defects)), cable(scanner, {}), talk(cable) {}

  std::int32_t TryRead(std::uint32_t count) {
    got.assign(count, 0xEE);
    const std::int32_t result = cable.RawReadData(got.data(), &count, nullptr);
    delivered = count;
    return result;
  }

  std::int32_t TrySend(std::string_view hex) {
    Bytes bytes = FromHex(hex);
    return cable.RawWriteData(bytes.data(), static_cast<std::uint32_t>(bytes.size()), nullptr);
  }

  ExtendedScanner scanner;
  FaultInjector cable;
  Conversation talk;
  Bytes got;
  std::uint32_t delivered = 0;
};

const std::string kStatusReply = "\"command\": \"FS F\"";

}  // namespace

TEST_CASE("fault: without one a scan passes as it is") {
  ExtendedScanner scanner(SmallFlatbed());
  FaultInjector cable(scanner, {});
  Conversation talk(cable);
  talk.SendAcknowledged("1C 57", ParameterBlock());
  CHECK(ScanAll(talk, 16).size() == 160);
  CheckNoViolations(scanner);
}

TEST_CASE("fault: a failed read loses its bytes, and the buffer gets none") {
  Desk desk(kStatusReply, "\"fail\"");
  desk.talk.Send("1C 46");
  CHECK(desk.TryRead(16) == kTimeout);
  CHECK(desk.delivered == 0);
  CHECK(desk.got == Bytes(16, 0xEE));
  Converse(desk.cable, "> 1C 46 < 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
  CheckNoViolations(desk.scanner);
}

TEST_CASE("fault: a failed write does not reach the scanner") {
  Desk desk("\"command\": \"FS W\", \"part\": \"parameters\"", "\"fail\"");
  Converse(desk.cable, "> 1C 57 < 06");
  CHECK(desk.TrySend(ToHex(ParameterBlock())) == kTimeout);
  CHECK_FALSE(desk.scanner.Request().has_value());
  desk.talk.Send(ParameterBlock());
  desk.talk.Expect("06");
}

TEST_CASE("fault: a read that is cut short succeeds with its first bytes") {
  Desk desk("\"command\": \"FS I\"", "{\"cut\": 3}");
  desk.talk.Send("1C 49");
  CHECK(desk.TryRead(80) == 0);
  CHECK(desk.delivered == 3);
  CHECK(ToHex({desk.got.begin(), desk.got.begin() + 4}) == "42 38 00 EE");
  Converse(desk.cable, "> 1C 46 < 00 00");
}

TEST_CASE("fault: a write that is cut short reaches the scanner in part") {
  Desk desk("\"command\": \"FS W\", \"part\": \"parameters\"", "{\"cut\": 63}");
  Converse(desk.cable, "> 1C 57 < 06");
  CHECK(desk.TrySend(ToHex(ParameterBlock())) == 0);
  CHECK_FALSE(desk.scanner.Request().has_value());
  desk.talk.Send("00");
  CHECK(desk.scanner.Request().has_value());
}

TEST_CASE("fault: an answer takes the place of the scanner's whole answer") {
  Desk desk("\"command\": \"ESC I\"", "{\"answer\": \"02 02 03 00 42 35\"}");
  Converse(desk.cable, "> 1B 49 < 02 02 03 00");
  CHECK(desk.TryRead(3) == 0);
  CHECK(desk.delivered == 2);
  CHECK(desk.TryRead(1) == kTimeout);
  Converse(desk.cable, "> 1C 46 < 00 00");
  CheckNoViolations(desk.scanner);
}

TEST_CASE("fault: an empty answer is none") {
  Desk desk(kStatusReply, "{\"answer\": \"\"}");
  desk.talk.Send("1C 46");
  CHECK(desk.TryRead(16) == kTimeout);
}

TEST_CASE("fault: other bytes than the driver's reach the scanner") {
  Desk desk("\"command\": \"FS F\", \"part\": \"command\"", "{\"answer\": \"1B 40\"}");
  Converse(desk.cable, "> 1C 46 < 06");
}

TEST_CASE("fault: a scanner on hold reports warming up so many times, and nothing is excused") {
  Desk desk("\"command\": \"FS F\", \"occurrence\": 2", "{\"hold\": 2}");
  for (const char* status : {"00", "02", "02", "00"}) {
    desk.talk.Send("1C 46");
    CHECK(ToHex({desk.talk.Read(16)[0]}) == status);
  }
  desk.talk.Send("06");
  CheckViolation(desk.scanner, "expected a command, got 06");
}

TEST_CASE("fault: a hold begins at any place, and is found where status stands in portions") {
  StandardScanner scanner(SmallStandard());
  FaultInjector cable(scanner, One("\"transfer\": 0", "{\"hold\": 2}"));
  Conversation talk(cable);
  Converse(cable, "> 1B 66 < 02 00 0B 00");
  CHECK(talk.Read(11)[0] == 0x02);
  Converse(cable, "> 1B 46 < 02 02 00 00 > 1B 46 < 02 00 00 00");
  CheckNoViolations(scanner);
}

TEST_CASE("fault: behind an unplugged cable nothing passes any more") {
  Desk desk("\"transfer\": 1", "\"unplug\"");
  desk.talk.Send("1C 46");
  CHECK(desk.TryRead(16) == kUnplugged);
  CHECK(desk.delivered == 0);
  CHECK(desk.TrySend("1C 46") == kUnplugged);
  CHECK(desk.TryRead(16) == kUnplugged);
  CheckNoViolations(desk.scanner);
}

TEST_CASE("fault: transfers are counted from 0, reads and writes together") {
  Desk desk("\"transfer\": 3", "\"fail\"");
  for (int i = 0; i < 2; ++i) desk.talk.Send("1C 46"), i == 0 ? (void)desk.talk.Read(16) : void();
  CHECK(desk.TryRead(16) == kTimeout);
}

TEST_CASE("fault: every occurrence of a command is struck") {
  Desk desk("\"command\": \"FS F\", \"occurrence\": \"every\"", "{\"cut\": 1}");
  for (int i = 0; i < 3; ++i) {
    desk.talk.Send("1C 46");
    CHECK(desk.TryRead(16) == 0);
    CHECK(desk.delivered == 1);
  }
}

TEST_CASE("fault: a parameter that looks like a command is none") {
  StandardScanner scanner(SmallStandard());
  FaultInjector cable(scanner, One("\"command\": \"FF\"", "\"fail\""));
  Conversation talk(cable);
  talk.SendAcknowledged("1B 44", FromHex("0C"));  // 12 bits
  talk.SendAcknowledged("1B 64", FromHex("0C"));  // 12 lines
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
    Converse(desk.cable, kSetUp + "> 1C 47 * 14 * 65");
    const bool answerPasses = desk.TrySend("06") == 0;
    CHECK(answerPasses == (std::string(at).find("answer") == std::string::npos));
    CHECK(desk.TryRead(65) == kUnplugged);
  }
}

TEST_CASE("fault: header and lines of a block of a standard scan") {
  StandardScanner scanner(SmallStandard());
  FaultInjector cable(scanner,
                      One("\"command\": \"ESC G\", \"block\": 1, \"read\": 1", "{\"cut\": 5}"));
  Upload(scanner, StandardScan{});
  Converse(cable, "> 1B 47 * 70 > 06 < 02 00 10 00 04 00");
  Bytes lines(64);
  std::uint32_t count = 64;
  CHECK(cable.RawReadData(lines.data(), &count, nullptr) == 0);
  CHECK(count == 5);
}

TEST_CASE("fault: what comes of a fault is excused until a reset") {
  Desk desk(kStatusReply, "\"fail\"");
  desk.talk.Send("1C 46");
  desk.TryRead(16);
  desk.talk.Send("06");
  CheckNoViolations(desk.scanner);
  Converse(desk.cable, "> 1B 40 < 06 > 06");
  CheckViolation(desk.scanner, "expected a command, got 06");
}

TEST_CASE("fault: one that was not reached is told") {
  Desk desk("\"command\": \"FS F\", \"occurrence\": 2", "\"fail\"");
  Converse(desk.cable, "> 1C 46 * 16");
  CHECK(desk.cable.Unreached() == std::vector<std::string>{"f.json:1"});
  desk.talk.Send("1C 46");
  desk.TryRead(16);
  CHECK(desk.cable.Unreached().empty());
}

TEST_CASE("fault: unplugged-at-byte lets the bytes before it pass") {
  Desk desk("unplugged-at-byte=10");
  desk.talk.Send("1C 49");
  CHECK(desk.TryRead(80) == kUnplugged);
  CHECK(desk.delivered == 8);
  CHECK(Bytes(desk.got.begin(), desk.got.begin() + 8) == FromHex("42 38 00 00 64 00 00 00"));
  CHECK(desk.TrySend("06") == kUnplugged);
  CheckNoViolations(desk.scanner);
}

TEST_CASE("fault: a cable pulled out within a write brings the scanner a part of it") {
  Desk desk("unplugged-at-byte=4");
  Converse(desk.cable, "> 1B 65 < 06");
  CHECK(desk.TrySend("00 1C 46") == kUnplugged);
  Conversation(desk.scanner).Expect("06");  // the parameter came, the status query did not
  CHECK(desk.TryRead(1) == kUnplugged);
}

TEST_CASE("fault: unplugged-at-transfer fails that transfer and all later ones") {
  Desk desk("unplugged-at-transfer=2");
  Converse(desk.cable, "> 1B 40 < 06");
  CHECK(desk.TrySend("1B") == kUnplugged);
  CHECK(desk.TryRead(1) == kUnplugged);
  CHECK(desk.delivered == 0);
  CheckNoViolations(desk.scanner);
}

TEST_CASE("fault: short-read-at-transfer succeeds once with half of the bytes") {
  Desk desk("short-read-at-transfer=0");
  desk.talk.Send("1C 46");
  CHECK(desk.TryRead(16) == 0);
  CHECK(desk.delivered == 8);
  Converse(desk.cable, "> 1C 46 < 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
  CheckNoViolations(desk.scanner);
}

TEST_CASE("fault: what a short read lost is not held against the driver until a reset") {
  Desk desk("short-read-at-transfer=0");
  desk.talk.Send("1B 65");
  CHECK(desk.TryRead(1) == 0);
  CHECK(desk.delivered == 0);
  desk.talk.Send("1C 46");
  desk.talk.Expect("15");  // FS is taken for the parameter of ESC e
  CheckNoViolations(desk.scanner);
}

TEST_CASE("fault: the standard scanner's cable may be pulled out") {
  StandardScanner scanner(Spoiled(SmallStandard(), "unplugged-at-byte=4"));
  FaultInjector cable(scanner, {});
  Conversation talk(cable);
  talk.Send("1B 46");
  CHECK(talk.ReadInVain(4) == FromHex("02 00"));
}

TEST_CASE("fault: of a defect named twice the last value counts") {
  Desk desk("unplugged-at-byte=1+unplugged-at-byte=4");
  Converse(desk.cable, "> 1B 40 < 06");
  CHECK(desk.TrySend("1B 40") == kUnplugged);
}

TEST_CASE("fault: a cable's own fault that does not strike is not told") {
  Desk desk("unplugged-at-byte=1000");
  CHECK(desk.cable.Unreached().empty());
}
