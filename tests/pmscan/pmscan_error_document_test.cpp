#include <doctest/doctest.h>

#include <fstream>
#include <set>
#include <string>

#include "pmscan/report/error_codes.h"

namespace {

// The rows of the document's table that begin with a number.
std::set<std::string> RowsOfDocument() {
  std::ifstream document(PMSCAN_ERROR_DOCUMENT);
  REQUIRE(document.is_open());
  std::set<std::string> rows;
  for (std::string line; std::getline(document, line);) {
    const bool isRow = line.size() > 2 && line[0] == '|' && line[2] >= '0' && line[2] <= '9';
    if (isRow) rows.insert(line);
  }
  return rows;
}

TEST_CASE("pmscan: the document on error codes is the program's table") {
  std::set<std::string> rows;
  for (const pmscan::ErrorCode& row : pmscan::kErrorCodes) {
    rows.insert("| " + std::to_string(row.code) + " | " + std::string(row.meaning) + " | " +
                std::string(row.whatToDo) + " | " + std::to_string(row.exitCode) + " |");
  }
  CHECK(RowsOfDocument() == rows);
}

}  // namespace
