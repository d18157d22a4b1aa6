#include <doctest/doctest.h>

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>

#include "simulator/catalog/profile.h"

// Schema and document say what the reader of profiles knows, and nothing else.

using simulator::KeyGroup;
using simulator::KeyText;
using Json = nlohmann::json;

namespace {

std::string ReadText(const char* file) {
  std::ifstream stream(file, std::ios::binary);
  REQUIRE(stream);
  return {std::istreambuf_iterator<char>(stream), {}};
}

Json Definitions() {
  return Json::parse(ReadText(PMDDB832_PROFILES "/schema.json"))["$defs"];
}

Json PropertiesOf(const KeyGroup& group) {
  Json properties = Json::object();
  for (const KeyText& row : group.keys) {
    properties[std::string(row.key)] = Json::parse(SchemaOf(row.kind));
    properties[std::string(row.key)]["description"] = row.sentence;
  }
  return properties;
}

Json RequiredOf(const KeyGroup& group) {
  Json required;
  for (const KeyText& row : group.keys) {
    if (row.isNeeded) required.push_back(row.key);
  }
  return required;
}

// The rows of an object's table; all defects are numbers or flags, and say so in their sentences.
std::string TableOf(const KeyGroup& group) {
  std::string table;
  for (const KeyText& row : group.keys) {
    table += "| `" + std::string(row.key) + "` | ";
    if (group.object != "defects") table += WordsOf(row.kind) + " | ";
    table += std::string(row.sentence) + (row.isNeeded ? " Required." : "") + " |\n";
  }
  return table;
}

}  // namespace

TEST_CASE("profile schema: every object has the keys, kinds and ranges that the reader checks") {
  const Json definitions = Definitions();
  for (const KeyGroup& group : simulator::ProfileKeys()) {
    CAPTURE(group.object);
    const Json& described = definitions.at(std::string(group.object));
    CHECK(Json::diff(described["properties"], PropertiesOf(group)).dump() == "[]");
    CHECK(described.value("required", Json()) == RequiredOf(group));
    CHECK(described["additionalProperties"] == false);
  }
}

TEST_CASE("profile schema: every object with properties is one that the reader knows") {
  std::set<std::string> described;
  const Json definitions = Definitions();
  for (const auto& [name, definition] : definitions.items()) {
    if (definition.contains("properties")) described.insert(name);
  }
  std::set<std::string> known;
  for (const KeyGroup& group : simulator::ProfileKeys()) known.emplace(group.object);
  CHECK(described == known);
}

TEST_CASE("profile document: every object has its table of keys") {
  const std::string document = ReadText(PMDDB832_PROFILE_DOCUMENT);
  for (const KeyGroup& group : simulator::ProfileKeys()) {
    CHECK_MESSAGE(document.find("|\n" + TableOf(group) + "\n") != std::string::npos,
                  "expected this table of ", group.object, ":\n", TableOf(group));
  }
}
