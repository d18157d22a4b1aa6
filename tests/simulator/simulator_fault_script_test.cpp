#include <doctest/doctest.h>

#include "simulator/catalog/profile_error.h"
#include "simulator/faults/fault_script.h"

// How faults are written, and what is said of those that cannot be.

using simulator::Fault;
using simulator::FaultKind;
using simulator::FaultPlace;
using simulator::ParseJson;
using simulator::ProfileError;
using simulator::ReadFaults;

namespace {

Fault Read(const std::string& at, const std::string& action) {
  return ReadFaults(ParseJson("[{\"at\": {" + at + "},\n\"do\": " + action + "}]", "f.json")).at(0);
}

FaultPlace Place(const std::string& at) {
  return Read(at, "\"fail\"").at;
}

void CheckTransferOfCommand(const std::string& at, std::uint32_t write,
                            std::optional<std::uint32_t> read) {
  INFO(at);
  CHECK(Place(at).write == write);
  CHECK(Place(at).read == read);
}

void CheckFails(const std::string& at, const std::string& action, const char* message) {
  CHECK_THROWS_WITH_AS(Read(at, action), doctest::Contains(message), ProfileError);
}

void CheckPlaceFails(const std::string& at, const char* message) {
  CheckFails(at, "\"fail\"", message);
}

void CheckActionFails(const std::string& action, const char* message) {
  CheckFails("\"transfer\": 1", action, message);
}

}  // namespace

TEST_CASE("fault script: a transfer by its number") {
  CHECK(Place("\"transfer\": 17").transfer == 17);
  CHECK_FALSE(Place("\"command\": \"FS W\"").transfer.has_value());
}

TEST_CASE("fault script: the first read from a transfer on, and the transfer that carries a byte") {
  CHECK(Place("\"readFrom\": 5").readFrom == 5);
  CHECK(Place("\"byte\": 1000").byte == 1000);
  CHECK_FALSE(Place("\"byte\": 1000").transfer.has_value());
}

TEST_CASE("fault script: half of a transfer is cut off") {
  CHECK(Read("\"transfer\": 1", "{\"cut\": \"half\"}").kind == FaultKind::kHalve);
}

TEST_CASE("fault script: a command's first time, a later one, or every one") {
  CHECK(Place("\"command\": \"FS W\"").command == "FS W");
  CHECK(Place("\"command\": \"FS W\"").occurrence == 1);
  CHECK(Place("\"command\": \"EM\", \"occurrence\": 3").occurrence == 3);
  CHECK_FALSE(Place("\"command\": \"ESC @\", \"occurrence\": \"every\"").occurrence.has_value());
}

TEST_CASE("fault script: the transfers of a command by name") {
  CheckTransferOfCommand("\"command\": \"FS W\"", 0, 0);
  CheckTransferOfCommand("\"command\": \"FS W\", \"part\": \"command\"", 0, std::nullopt);
  CheckTransferOfCommand("\"command\": \"FS W\", \"part\": \"reply\"", 0, 0);
  CheckTransferOfCommand("\"command\": \"ESC I\", \"part\": \"data\"", 0, 1);
  CheckTransferOfCommand("\"command\": \"FS W\", \"part\": \"parameters\"", 1, std::nullopt);
  CheckTransferOfCommand("\"command\": \"FS W\", \"part\": \"result\"", 1, 0);
}

TEST_CASE("fault script: the blocks of an image begin behind the header of FS G") {
  CheckTransferOfCommand("\"command\": \"FS G\", \"block\": 0", 0, 1);
  CheckTransferOfCommand("\"command\": \"FS G\", \"part\": \"block\"", 0, 1);
  CheckTransferOfCommand("\"command\": \"FS G\", \"block\": 3", 3, 0);
  CheckTransferOfCommand("\"command\": \"FS G\", \"block\": 3, \"part\": \"answer\"", 4,
                         std::nullopt);
}

TEST_CASE("fault script: the blocks of an image begin with the answer to ESC G") {
  CheckTransferOfCommand("\"command\": \"ESC G\", \"block\": 0", 0, 0);
  CheckTransferOfCommand("\"command\": \"ESC G\", \"read\": 1", 0, 1);
  CheckTransferOfCommand("\"command\": \"ESC G\", \"block\": 3, \"read\": 1", 3, 1);
}

TEST_CASE("fault script: what a fault does") {
  CHECK(Read("\"transfer\": 1", "\"fail\"").kind == FaultKind::kFail);
  CHECK(Read("\"transfer\": 1", "\"unplug\"").kind == FaultKind::kUnplug);
  CHECK(Read("\"transfer\": 1", "{\"cut\": 3}").count == 3);
  CHECK(Read("\"transfer\": 1", "{\"hold\": 4}").count == 4);
  CHECK(Read("\"transfer\": 1", "{\"answer\": \"02 8f0A\"}").bytes ==
        std::vector<std::uint8_t>{0x02, 0x8F, 0x0A});
  CHECK(Read("\"transfer\": 1", "{\"answer\": \"\"}").bytes.empty());
}

TEST_CASE("fault script: a fault knows where it is written") {
  CHECK(Read("\"transfer\": 1", "\"fail\"").origin == "f.json:1");
}

TEST_CASE("fault script: a place needs exactly one address") {
  CheckPlaceFails("",
                  "f.json:1: [0].at: expected \"transfer\", \"readFrom\" or \"byte\" with a "
                  "number, or \"command\"");
  CheckPlaceFails("\"transfer\": 1, \"command\": \"FS W\"",
                  "no other key can stand beside \"transfer\"");
  CheckPlaceFails("\"transfer\": -1", "expected a whole number from 0 to 2147483647, got -1");
}

TEST_CASE("fault script: a command is named by prefix and letter, or is a byte with a name") {
  for (const char* wrong : {"FS", "FS ", "FSW", "FS WW", "fs W", "W", "ACK", "ESC \xC3\xA4", ""}) {
    CheckPlaceFails("\"command\": \"" + std::string(wrong) + "\"",
                    "[0].at.command: expected a command: FS or ESC, a blank and its letter, or FF, "
                    "EM or CAN, got ");
  }
}

TEST_CASE("fault script: an occurrence is a number from 1 on") {
  const char* const expected = "expected a whole number from 1 ";
  CheckPlaceFails("\"command\": \"FS W\", \"occurrence\": 0", expected);
  CheckPlaceFails("\"command\": \"FS W\", \"occurrence\": \"all\"", expected);
}

TEST_CASE("fault script: an unknown part is told with the nearest one") {
  CheckPlaceFails("\"command\": \"FS W\", \"part\": \"parameter\"",
                  "expected a part of the command, got \"parameter\"; did you mean \"parameters\"? "
                  "There are: command, reply, data, parameters, result, block, answer");
}

TEST_CASE("fault script: a place that no driver comes to is an error") {
  CheckPlaceFails("\"command\": \"FS X\"", "[0].at: no driver sends FS X, so this cannot strike");
  CheckPlaceFails("\"command\": \"ESC W\"", "no driver sends ESC W");
  CheckPlaceFails("\"command\": \"FS W\", \"part\": \"data\"",
                  "FS W has no \"data\", so this cannot strike");
  CheckPlaceFails("\"command\": \"FS I\", \"part\": \"parameters\"", "FS I has no \"parameters\"");
  CheckPlaceFails("\"command\": \"FS F\", \"part\": \"result\"", "FS F has no \"result\"");
  CheckPlaceFails("\"command\": \"ESC R\", \"block\": 2", "ESC R has no \"block\"");
  CheckPlaceFails("\"command\": \"CAN\", \"part\": \"answer\"", "CAN has no \"answer\"");
  CheckPlaceFails("\"command\": \"ESC @\", \"part\": \"data\"", "ESC @ has no \"data\"");
  CHECK(Place("\"command\": \"ESC R\", \"part\": \"parameters\"").write == 1);
  CHECK(Place("\"command\": \"ESC f\", \"part\": \"data\"").read == 1);
  CHECK(Place("\"command\": \"FF\"").read == 0);
}

TEST_CASE("fault script: block and read belong to the parts of an image") {
  CheckPlaceFails("\"command\": \"FS W\", \"part\": \"reply\", \"block\": 1",
                  "[0].at.block: belongs to the parts \"block\" and \"answer\" only");
  CheckPlaceFails("\"command\": \"FS G\", \"part\": \"answer\", \"read\": 1",
                  "[0].at.read: the answer to a block is written, not read");
}

TEST_CASE("fault script: an action is one of five") {
  CheckActionFails("\"explode\"", "f.json:2: [0].do: expected \"fail\", \"unplug\", or an object");
  CheckActionFails("{}", "f.json:2: [0].do: expected exactly one of");
  CheckActionFails("{\"cut\": 1, \"hold\": 1}", "expected exactly one of");
  CheckActionFails("{\"hold\": 0}", "[0].do.hold: expected a whole number from 1 to");
  CheckActionFails("{\"held\": 1}", "[0].do.held: there is no such key; did you mean \"hold\"?");
}

TEST_CASE("fault script: bytes are pairs of hexadecimal digits") {
  for (const char* wrong : {"1", "02 8", "0G", "0x15"}) {
    CheckActionFails("{\"answer\": \"" + std::string(wrong) + "\"}",
                     "[0].do.answer: expected bytes of two hexadecimal digits each");
  }
}

TEST_CASE("fault script: a file of faults is an object with a list of them") {
  CHECK(simulator::ReadFaultScript(PMDDB832_PROFILES "/faults/lost_block.json").size() == 1);
  CHECK_THROWS_WITH_AS(simulator::ReadFaultScript(PMDDB832_PROFILES "/desk_flatbed.json"),
                       doctest::Contains("desk_flatbed.json:4: base: there is no such key; there "
                                         "are: $schema, description, faults"),
                       ProfileError);
}
