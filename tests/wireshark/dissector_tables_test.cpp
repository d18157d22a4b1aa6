#include "tests/wireshark/dissector_tables.h"

#include <doctest/doctest.h>

#include <fstream>
#include <iterator>

namespace {

constexpr const char* kBegin = "-- tables begin\n";
constexpr const char* kEnd = "-- tables end\n";
constexpr const char* kExpectedFile = "dissector_tables.lua";  // in the build folder

std::string TextBetweenMarks() {
  std::ifstream file(PMDDB832_DISSECTOR);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  const std::size_t begin = text.find(kBegin);
  const std::size_t end = text.find(kEnd);
  REQUIRE(begin != std::string::npos);
  REQUIRE(end != std::string::npos);
  const std::size_t first = begin + std::string(kBegin).size();
  return text.substr(first, end - first);
}

// What names a field differently in Wireshark and in "pmscan decode" is found here.
TEST_CASE("the dissector has the tables of the module and the tools") {
  const std::string expected = pmddb832::tests::DissectorTables();
  if (TextBetweenMarks() == expected) return;
  std::ofstream(kExpectedFile) << expected;
  FAIL("put the text of ", kExpectedFile, " between the marks in ", PMDDB832_DISSECTOR);
}

}  // namespace
