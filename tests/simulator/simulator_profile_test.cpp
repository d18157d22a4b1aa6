#include <doctest/doctest.h>

#include <map>

#include "simulator/catalog/profile.h"
#include "simulator/catalog/profile_error.h"
#include "tests/simulator/simulator_conversation.h"

// Scanners from JSON: what each property does on the wire.

using namespace simulator_test;
using simulator::ParseProfile;
using simulator::Picture;
using simulator::Profile;

namespace {

// Beside the profiles of the project, so that their pictures are found.
Profile Parse(const std::string& members) {
  return ParseProfile("{" + members + "}", PMDDB832_PROFILES "/test.json");
}

// Gives every file a picture of its own, one pixel high.
Picture ReadByName(const std::string& file) {
  const char digit = file.at(file.size() - 5);
  return {8, 1, 100, std::vector<std::uint16_t>(24, static_cast<std::uint16_t>(digit << 8))};
}

std::unique_ptr<simulator::Scanner> Make(const std::string& members) {
  return MakeScanner(Parse(members), ReadByName, Pattern(16, 10));
}

// The answer to a command that has no parameters.
Bytes Ask(simulator::Scanner& scanner, std::string_view command, std::size_t count) {
  Conversation talk(scanner);
  talk.Send(command);
  return talk.Read(count);
}

std::string Part(const Bytes& bytes, std::ptrdiff_t at, std::ptrdiff_t count) {
  return ToHex({bytes.begin() + at, bytes.begin() + at + count});
}

Bytes Identity(const std::string& members) {
  return Ask(*Make(members), "1C 49", 80);
}

Bytes StandardIdentity(const std::string& members, std::size_t count) {
  return Ask(*Make(members), "1B 49", count);
}

// Sends the block that scans the top line of a page in grey, 100 dpi, and returns its first byte.
std::uint8_t FirstByteOfPage(simulator::Scanner& scanner) {
  return ScanWith(scanner, With(ParameterBlock(), "16: 08, 20: 01, 26: 01"), 8).at(0);
}

}  // namespace

TEST_CASE("simulator: a profile without more is its base") {
  const Bytes identity = Identity(R"("base": "extended:RV7000H")");
  CHECK(Part(identity, 46, 16) == "53 43 41 4E 4E 45 52 20 52 56 2D 37 30 30 30 48");
  CHECK(Parse(R"("base": "extended:RV7000H")").modelId == "RV7000H");
  CHECK(Parse(R"("base": "extended")").modelId == "");
}

TEST_CASE("simulator: the model id that the host has can be another") {
  CHECK(Parse(R"("base": "standard:RV3000", "modelId": "QM2700")").modelId == "QM2700");
  CHECK(Parse(R"("base": "standard:RV3000", "modelId": "")").modelId == "");
}

TEST_CASE("simulator: an extended identity is overridden field by field") {
  const Bytes identity = Identity(R"("base": "extended", "identity": {
      "level": "B5", "productName": "MINE", "basicResolution": 300, "minResolution": 7,
      "maxResolution": 1000, "flatbed": {"width": 258, "height": 3}, "feederFlags": "0x38"})");
  CHECK(Part(identity, 0, 2) == "42 35");
  CHECK(Part(identity, 4, 12) == "2C 01 00 00 07 00 00 00 E8 03 00 00");
  CHECK(Part(identity, 20, 8) == "02 01 00 00 03 00 00 00");
  CHECK(identity[44] == 0x38);
  CHECK(Part(identity, 46, 16) == "4D 49 4E 45 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST_CASE("simulator: an area in inches or millimetres counts at the basic resolution") {
  const Bytes identity = Identity(R"("base": "extended", "identity": {
      "feeder": {"width": 2.5, "height": 4, "unit": "inches"}, "basicResolution": 100,
      "transparencyUnit": {"width": 25.4, "height": 50.8, "unit": "mm"}})");
  CHECK(Part(identity, 28, 8) == "FA 00 00 00 90 01 00 00");
  CHECK(Part(identity, 36, 8) == "64 00 00 00 C8 00 00 00");
}

TEST_CASE("simulator: areas keep their size in inches when the resolution changes") {
  const Bytes identity = Identity(R"("base": "extended", "identity": {"basicResolution": 300})");
  CHECK(Part(identity, 20, 8) == "F6 09 00 00 B6 0D 00 00");  // 2550 x 3510 of 5100 x 7020
}

TEST_CASE("simulator: a standard identity is overridden field by field") {
  const Bytes reply = StandardIdentity(R"("base": "standard", "identity": {
      "level": "B4", "resolutions": [50, 100], "flatbed": {"width": 800, "height": 600}})",
                                       17);
  CHECK(ToHex(reply) == "02 00 0D 00 42 34 52 32 00 52 64 00 41 20 03 58 02");
}

TEST_CASE("simulator: a standard scanner that lists half scans twice as finely") {
  const auto scanner = Make(R"("base": "standard",
      "identity": {"resolutions": [50, 100], "listsHalf": true})");
  Converse(*scanner, "+ R C8 00 C8 00");
  CheckNoViolations(*scanner);
}

TEST_CASE("simulator: a standard scanner tells product name, option unit, area and flags") {
  const auto scanner = Make(R"("base": "standard", "optionUnit": "feeder",
      "identity": {"productName": "MINE", "feederFlags": 48,
                   "feeder": {"width": 300, "height": 400}})");
  CHECK(Part(Ask(*scanner, "1B 3F", 28), 12, 5) == "4D 49 4E 45 00");
  CHECK(Part(Ask(*scanner, "1B 66", 15), 4, 6) == "30 80 2C 01 90 01");
}

TEST_CASE("simulator: the transparency unit is fitted by its name") {
  const auto scanner = Make(R"("base": "extended:QM5500", "optionUnit": "transparencyUnit")");
  CHECK(Part(Ask(*scanner, "1C 46", 16), 0, 3) == "00 00 80");
}

TEST_CASE("simulator: manners that both families know") {
  for (const std::string base : {"extended", "standard"}) {
    const auto scanner =
        Make("\"base\": \"" + base + R"(", "manners": {"focusFails": true, "focusFound": "0x12"})");
    CHECK(ToHex(Ask(*scanner, "1B 71", 6)) == "02 00 02 00 01 12");
  }
}

TEST_CASE("simulator: an extended scanner may refuse starts") {
  const auto scanner = Make(R"("base": "extended", "manners": {"refusedTransfers": 1})");
  Converse(*scanner,
           kSetUp + "> 1C 47 < 02 80 00 00 00 00 00 00 00 00 00 00 00 00 > 1C 47 < 02 00");
}

TEST_CASE("simulator: an extended scanner may keep its commands to itself, and end with nothing") {
  const auto scanner = Make(R"("base": "extended",
      "manners": {"knowsExtendedCommands": false, "emptyLastBlock": true})");
  CHECK(Part(Ask(*scanner, "1B 49", 44), 0, 2) == "02 00");
  Converse(*scanner, SetUpWith("20: 08") + "> 1C 47 < 02 00 40 00 00 00 02 00 00 00 00 00 00 00");
}

TEST_CASE("simulator: defects are switched on by flag, by number and by letter") {
  const auto scanner = Make(R"("base": "extended",
      "defects": {"fatal-error": true, "not-ready": false, "warm-up": 1, "nak-command": "e"})");
  CHECK(Ask(*scanner, "1C 46", 16)[0] == 0x82);
  CHECK(Ask(*scanner, "1C 46", 16)[0] == 0x80);
  CHECK(ToHex(Ask(*scanner, "1B 65", 1)) == "15");
}

TEST_CASE("simulator: the feeder holds the files in their order, in copies, and the original") {
  const auto scanner = Make(R"("base": "extended:QM5500", "identity": {"basicResolution": 100},
      "original": "pictures/sheet_3.png",
      "pages": ["pictures/sheet_2.png", {"file": "pictures/sheet_1.png", "copies": 2}, {}])");
  for (const char expected : {'2', '1', '1', '3'}) CHECK(FirstByteOfPage(*scanner) == expected);
  CHECK(Ask(*scanner, "1C 46", 16)[1] == 0xC8);
  CheckNoViolations(*scanner);
}

TEST_CASE("simulator: a feeder of which nothing is said holds one page, and an empty list none") {
  CHECK(Ask(*Make(R"("base": "extended:QM5500")"), "1C 46", 16)[1] == 0x80);
  CHECK(Ask(*Make(R"("base": "extended:QM5500", "pages": [])"), "1C 46", 16)[1] == 0xC8);
}

TEST_CASE("simulator: a picture file is read once") {
  std::map<std::string, int> reads;
  const Profile profile = Parse(R"("base": "extended:QM5500",
      "pages": ["pictures/sheet_2.png", "pictures/sheet_2.png", {"copies": 3}])");
  MakeScanner(profile, [&](const std::string& file) { return ++reads[file], ReadByName(file); },
              {});
  CHECK(reads == std::map<std::string, int>{{PMDDB832_PROFILES "/pictures/sheet_2.png", 1}});
}
