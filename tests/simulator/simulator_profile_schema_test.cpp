#include <doctest/doctest.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "simulator/catalog/json_keys.h"
#include "simulator/catalog/profile.h"

// Schema and document know what the reader of profiles knows, and nothing else.

using simulator::FindKey;
using simulator::JsonMember;
using simulator::JsonNode;
using simulator::KeyGroup;

namespace {

using Names = std::vector<std::string>;

const JsonNode& Schema() {
  static const JsonNode schema = simulator::ReadJson(PMDDB832_PROFILES "/schema.json");
  return schema;
}

Names SortedKeys(const JsonNode& object) {
  Names keys;
  for (const JsonMember& member : simulator::MembersOf(object)) keys.push_back(member.key);
  std::sort(keys.begin(), keys.end());
  return keys;
}

Names Sorted(const std::vector<std::string_view>& names) {
  Names sorted(names.begin(), names.end());
  std::sort(sorted.begin(), sorted.end());
  return sorted;
}

// $defs/NAME/properties
const JsonNode& Properties(std::string_view definition) {
  const JsonNode* const found = FindKey(*FindKey(Schema(), "$defs"), definition);
  REQUIRE(found != nullptr);
  return *FindKey(*found, "properties");
}

std::string ReadDocument() {
  std::ifstream stream(PMDDB832_PROFILE_DOCUMENT, std::ios::binary);
  REQUIRE(stream);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace

TEST_CASE("profile schema: every object has the keys that the reader knows") {
  for (const KeyGroup& group : simulator::ProfileKeys()) {
    CAPTURE(group.object);
    CHECK(SortedKeys(Properties(group.object)) == Sorted(group.keys));
  }
}

TEST_CASE("profile schema: every object with properties is one that the reader knows") {
  Names described;
  for (const JsonMember& member : simulator::MembersOf(*FindKey(Schema(), "$defs"))) {
    if (FindKey(member.value, "properties") != nullptr) described.push_back(member.key);
  }
  std::vector<std::string_view> known;
  for (const KeyGroup& group : simulator::ProfileKeys()) known.push_back(group.object);
  std::sort(described.begin(), described.end());
  CHECK(described == Sorted(known));
}

TEST_CASE("profile schema: the parts of a command are those that the reader knows") {
  Names parts;
  for (const JsonNode& part :
       simulator::ElementsOf(*FindKey(*FindKey(Properties("place"), "part"), "enum"))) {
    parts.push_back(simulator::TextOf(part));
  }
  std::sort(parts.begin(), parts.end());
  CHECK(parts == Sorted(simulator::FaultParts()));
}

TEST_CASE("profile document: every key is in it") {
  const std::string document = ReadDocument();
  for (const KeyGroup& group : simulator::ProfileKeys()) {
    for (const std::string_view key : group.keys) {
      CAPTURE(group.object);
      CAPTURE(key);
      CHECK(document.find("`" + std::string(key) + "`") != std::string::npos);
    }
  }
}

TEST_CASE("profile document: every defect has its sentence") {
  const std::string document = ReadDocument();
  for (const simulator::DefectRow& row : simulator::DefectTable()) {
    CAPTURE(row.name);
    const std::string line = "| `" + std::string(row.name) + "` | " + std::string(row.sentence);
    CHECK(document.find(line) != std::string::npos);
  }
}
