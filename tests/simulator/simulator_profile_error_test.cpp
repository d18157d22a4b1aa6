#include <doctest/doctest.h>

#include "simulator/catalog/profile.h"
#include "simulator/catalog/profile_error.h"

// What a profile that cannot be used is told: file, line, key, what was expected and what came.

using simulator::ParseProfile;
using simulator::ProfileError;

namespace {

// A profile whose second line is given.
void CheckSecondLine(const std::string& line, const char* message) {
  CHECK_THROWS_WITH_AS(ParseProfile("{\"base\": \"extended\",\n" + line + "}", "a.json"),
                       doctest::Contains(message), ProfileError);
}

void CheckStandard(const std::string& line, const char* message) {
  CHECK_THROWS_WITH_AS(ParseProfile("{\"base\": \"standard\",\n" + line + "}", "a.json"),
                       doctest::Contains(message), ProfileError);
}

}  // namespace

TEST_CASE("profile error: a profile is an object with a base") {
  CHECK_THROWS_WITH_AS(ParseProfile("[]", "a.json"),
                       "a.json:1: expected an object in braces, got a list", ProfileError);
  CHECK_THROWS_WITH_AS(
      ParseProfile("{}", "a.json"),
      "a.json:1: a scanner file needs the key \"base\": the scanner it starts from, as "
      "in \"extended\" or \"standard:QM2700\"",
      ProfileError);
}

TEST_CASE("profile error: a base that does not exist is told with the one that was meant") {
  CHECK_THROWS_WITH_AS(ParseProfile("{\n\"base\": \"extended:QM1\"}", "a.json"),
                       doctest::Contains("a.json:2: base: no scanner is named \"extended:QM1\"; "
                                         "did you mean \"extended:QM"),
                       ProfileError);
  CHECK_THROWS_WITH_AS(ParseProfile("{\"base\": \"extended+pages=3\"}", "a.json"),
                       doctest::Contains("no scanner is named \"extended+pages=3\""), ProfileError);
}

TEST_CASE("profile error: an unknown key is told with the nearest one and a dozen at most") {
  CheckSecondLine("\"maners\": {}",
                  "a.json:2: maners: there is no such key; did you mean \"manners\"? There are: "
                  "$schema, description, base, modelId, identity, manners, optionUnit, original, "
                  "pages, defects, faults");
  CheckSecondLine("\"identity\": {\"resolutions\": [1]}",
                  "a.json:2: identity.resolutions: there is no such key; did you mean "
                  "\"minResolution\"? There are: level, productName, basicResolution, "
                  "minResolution, maxResolution, flatbed, feeder, transparencyUnit, feederFlags");
  CheckStandard("\"manners\": {\"qqq\": 1}",
                "a.json:2: manners.qqq: there is no such key; there are: refusedTransfers, "
                "focusFound, focusFails");
}

TEST_CASE("profile error: an unknown defect is told with the nearest one") {
  CheckSecondLine("\"defects\": {\"warmup\": 3}",
                  "a.json:2: defects.warmup: there is no such key; did you mean \"warm-up\"?");
}

TEST_CASE("profile error: a number out of its range, or no number") {
  CheckSecondLine("\"identity\": {\"maxResolution\": \"many\"}",
                  "a.json:2: identity.maxResolution: expected a whole number from 1 to 65535, got "
                  "\"many\"");
  CheckSecondLine("\"identity\": {\"maxResolution\": 0}", "from 1 to 65535, got 0");
  CheckSecondLine("\"identity\": {\"maxResolution\": 65536}", "from 1 to 65535, got 65536");
  CheckSecondLine("\"identity\": {\"maxResolution\": 2.5}", "from 1 to 65535, got 2.5");
  CheckSecondLine("\"manners\": {\"refusedTransfers\": -1}", "from 0 to 1000, got -1");
}

TEST_CASE("profile error: a lowest resolution above the highest") {
  CheckSecondLine("\"identity\": {\"minResolution\": 5000}",
                  "a.json:2: identity: minResolution 5000 is above maxResolution 2400");
}

TEST_CASE("profile error: resolutions that do not ascend, or none") {
  CheckStandard("\"identity\": {\"resolutions\": [50,\n40]}",
                "a.json:3: identity.resolutions[1]: expected more than the 50 before it, got 40");
  CheckStandard("\"identity\": {\"resolutions\": []}", "expected 1 to 1000 resolutions, got 0");
  CheckStandard("\"identity\": {\"resolutions\": 50}", "expected a list in brackets, got 50");
}

TEST_CASE("profile error: texts of another length") {
  CheckSecondLine("\"identity\": {\"level\": \"B\"}",
                  "a.json:2: identity.level: expected two characters, as in \"B8\", got \"B\"");
  CheckSecondLine("\"identity\": {\"productName\": \"ABCDEFGHIJKLMNOPQ\"}",
                  "a.json:2: identity.productName: expected at most 16 characters, got ");
  CheckSecondLine("\"modelId\": \"ABCDEFGH\"",
                  "a.json:2: modelId: expected at most 7 characters, got \"ABCDEFGH\"");
  CheckSecondLine("\"description\": 3", "a.json:2: description: expected a text in quotes, got 3");
}

TEST_CASE("profile error: bytes and flags") {
  const char* const expected =
      "a.json:2: manners.focusFound: expected a number from 0 to 255, or two digits as in "
      "\"0x38\", got ";
  for (const char* wrong : {"256", "-1", "\"38\"", "\"0x100\"", "\"0x\"", "\"0xg\"", "true"}) {
    CheckSecondLine("\"manners\": {\"focusFound\": " + std::string(wrong) + "}", expected);
  }
  CheckSecondLine("\"manners\": {\"focusFails\": 1}",
                  "a.json:2: manners.focusFails: expected true or false, got 1");
}

TEST_CASE("profile error: an area without a side, of an unknown unit, too large") {
  CheckSecondLine("\"identity\": {\"flatbed\": {\"width\": 3}}",
                  "a.json:2: identity.flatbed: an area needs the key \"height\"");
  CheckSecondLine("\"identity\": {\"flatbed\": {\"width\": -3, \"height\": 1}}",
                  "identity.flatbed.width: expected a number that is not negative, got -3");
  CheckSecondLine(
      "\"identity\": {\"flatbed\": {\"unit\": \"inch\", \"width\": 3, \"height\": 1}}",
      "identity.flatbed.unit: expected a unit, got \"inch\"; did you mean \"inches\"? There are: "
      "pixels, inches, mm");
  CheckSecondLine("\"identity\": {\"flatbed\": {\"width\": 1e10, \"height\": 1}}",
                  "identity.flatbed: the area has more pixels than a scanner can tell");
}

TEST_CASE("profile error: an option unit that there is not") {
  CheckSecondLine("\"optionUnit\": \"Feeder\"",
                  "a.json:2: optionUnit: expected an option unit, got \"Feeder\"; did you mean "
                  "\"feeder\"? There are: none, feeder, transparencyUnit");
}

TEST_CASE("profile error: defects with another kind of value") {
  CheckSecondLine("\"defects\": {\"fatal-error\": 1}",
                  "a.json:2: defects.fatal-error: expected true or false, got 1");
  CheckSecondLine("\"defects\": {\"nak-command\": \"FS W\"}",
                  "a.json:2: defects.nak-command: expected a whole number, or the letter of a "
                  "command in quotes, got \"FS W\"");
}

TEST_CASE("profile error: pages without a feeder") {
  CheckSecondLine("\"pages\": []",
                  "a.json:2: pages: the scanner has no feeder: add \"optionUnit\": \"feeder\", or "
                  "drop the pages");
}

TEST_CASE("profile error: pictures that are not there") {
  CheckSecondLine("\"original\": \"no/such.png\"",
                  "a.json:2: original: there is no file \"no/such.png\"");
  CHECK_THROWS_WITH_AS(
      ParseProfile("{\"base\": \"extended:QM5500\", \"pages\": [\n\"x.png\"]}", "dir/a.json"),
      "dir/a.json:2: pages[0]: there is no file \"dir/x.png\"", ProfileError);
}

TEST_CASE("profile error: no copies of a page") {
  CHECK_THROWS_WITH_AS(
      ParseProfile("{\"base\": \"extended:QM5500\", \"pages\": [{\"copies\": 0}]}", "a.json"),
      "a.json:1: pages[0].copies: expected a whole number from 1 to 1000, got 0", ProfileError);
}

TEST_CASE("profile error: faults of a profile are told like the rest") {
  CheckSecondLine("\"faults\": [{\"at\": {\"transfer\": 1}}]",
                  "a.json:2: faults[0]: a fault needs the key \"do\"");
}
