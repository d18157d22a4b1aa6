#include <doctest/doctest.h>

#include <set>

#include "tests/documents/document.h"
#include "tests/documents/quoted_test.h"

namespace documents {
namespace {

const std::string kTestBegin = "  - `";

bool NamesTest(const std::string& line) {
  return line.starts_with(kTestBegin) && line.ends_with('`');
}

std::string TestOf(const std::string& line) {
  return line.substr(kTestBegin.size(), line.size() - kTestBegin.size() - 1);
}

TEST_CASE("documents: every test that holds a rule is there") {
  std::size_t named = 0;
  for (const std::string& line : ReadLines(ProjectFolder() / "docs/rules.md")) {
    if (!NamesTest(line)) continue;
    CAPTURE(line);
    CHECK(TestCases().contains(TestOf(line)));
    ++named;
  }
  CHECK(named > 100);
}

TEST_CASE("documents: every rule names a test that holds it") {
  std::string rule;
  std::set<std::string> unheld;
  for (const std::string& line : ReadLines(ProjectFolder() / "docs/rules.md")) {
    if (line.starts_with("- **")) {
      rule = line;
      unheld.insert(rule);
    } else if (NamesTest(line)) {
      unheld.erase(rule);
    }
  }
  CHECK(!rule.empty());
  CHECK(unheld == std::set<std::string>{});
}

TEST_CASE(
    "documents: a test case is found by its name, "
    "of which \"quotes\" and pieces are put together") {
  const std::string name =
      "documents: a test case is found by its name, of which \"quotes\" and pieces are put "
      "together";
  REQUIRE(TestCases().contains(name));
  CHECK(TestCases().at(name) == "tests/documents/document_rules_test.cpp");
}

}  // namespace
}  // namespace documents
