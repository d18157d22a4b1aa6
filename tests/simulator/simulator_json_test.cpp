#include <doctest/doctest.h>

#include "simulator/catalog/json_document.h"
#include "simulator/catalog/nearest_name.h"
#include "simulator/catalog/profile_error.h"

// JSON values that know where they stand.

using simulator::JsonMember;
using simulator::JsonNode;
using simulator::NearestName;
using simulator::ParseJson;
using simulator::ProfileError;

namespace {

const JsonNode& At(const JsonNode& object, std::size_t index) {
  return std::get<JsonNode::Object>(object.value).at(index).value;
}

const JsonNode& Element(const JsonNode& list, std::size_t index) {
  return std::get<JsonNode::List>(list.value).at(index);
}

void CheckFails(const char* text, const char* message) {
  CHECK_THROWS_WITH_AS(ParseJson(text, "a.json"), message, ProfileError);
}

}  // namespace

TEST_CASE("simulator: a value knows the line of its key") {
  const JsonNode root = ParseJson("{\n\"a\": 1,\n\n\"b\":\n{\"c\": true}}", "a.json");
  CHECK(root.line == 1);
  CHECK(At(root, 0).line == 2);
  CHECK(At(root, 1).line == 4);
  CHECK(At(At(root, 1), 0).line == 5);
}

TEST_CASE("simulator: an element of a list knows its line, also with a line feed behind a number") {
  const JsonNode list = ParseJson("[\n1\n,\n2,\n\"x\"\n]\n", "a.json");
  CHECK(Element(list, 0).line == 2);
  CHECK(Element(list, 1).line == 4);
  CHECK(Element(list, 2).line == 5);
}

TEST_CASE("simulator: a value knows its path") {
  const JsonNode root = ParseJson(R"({"a": {"b": [0, {"c": null}]}})", "a.json");
  const JsonNode& list = At(At(root, 0), 0);
  CHECK(list.path == "a.b");
  CHECK(Element(list, 0).path == "a.b[0]");
  CHECK(At(Element(list, 1), 0).path == "a.b[1].c");
}

TEST_CASE("simulator: values say what they are") {
  const JsonNode list = ParseJson(R"([1, -2, 2.5, "ab", true, null, [], {}, 1e300])", "a.json");
  const char* const expected[]{"1",    "-2",     "2.5",       "\"ab\"", "true",
                               "null", "a list", "an object", "1e+300"};
  for (std::size_t i = 0; i < 9; ++i) CHECK(Element(list, i).Describe() == expected[i]);
}

TEST_CASE("simulator: a long text is cut where an error quotes it") {
  const JsonNode text = ParseJson("\"" + std::string(50, 'x') + "\"", "a.json");
  CHECK(text.Describe() == "\"" + std::string(40, 'x') + "...\"");
}

TEST_CASE("simulator: text that is no JSON is an error that names file and line") {
  CheckFails("{\n\"a\": }",
             "a.json:2: this is no JSON: syntax error while parsing value - "
             "unexpected '}'; expected '[', '{', or a literal");
  CheckFails("",
             "a.json:1: this is no JSON: syntax error while parsing value - unexpected end of "
             "input; expected '[', '{', or a literal");
  CheckFails("[1,\n2\n",
             "a.json:2: this is no JSON: syntax error while parsing array - unexpected "
             "end of input; expected ']'");
}

TEST_CASE("simulator: a key that stands twice in an object is an error") {
  CheckFails("{\"a\": {\n\"b\": 1,\n\"b\": 2}}", "a.json:3: a.b: the key stands in line 2 already");
}

TEST_CASE("simulator: brackets that are nested too deeply are an error") {
  CHECK_NOTHROW(ParseJson(std::string(32, '[') + std::string(32, ']'), "a.json"));
  CHECK_THROWS_WITH_AS(ParseJson(std::string(100000, '['), "a.json"),
                       doctest::Contains("nested too deeply"), ProfileError);
}

TEST_CASE("simulator: a file that is not there is an error that names it") {
  CHECK_THROWS_WITH_AS(simulator::ReadJson("no/such.json"),
                       "no/such.json: the file cannot be opened", ProfileError);
  CHECK_THROWS_WITH_AS(simulator::ReadJson("."), doctest::Contains(".: the file cannot be "),
                       ProfileError);
}

TEST_CASE("simulator: the nearest name is found by letters and case") {
  CHECK(NearestName("Level", {"feeder", "level"}) == "level");
  CHECK(NearestName("fedeer", {"level", "feeder"}) == "feeder");
  CHECK(NearestName("maxresolution", {"minResolution", "maxResolution"}) == "maxResolution");
  CHECK(NearestName("pgn", {"pdf", "png"}) == "png");
  CHECK(NearestName("Pgn", {"pdf", "png"}) == "png");
  CHECK(NearestName("xyzzy", {"level", "feeder"}).empty());
  CHECK(NearestName("--paper-size", {"--overwrite"}).empty());
  CHECK(NearestName("--dpi", {"--dll"}).empty());
}
