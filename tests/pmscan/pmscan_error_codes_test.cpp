#include <doctest/doctest.h>

#include <fstream>
#include <set>
#include <string>

#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/help_text.h"
#include "pmscan/report/error_codes.h"

namespace {

using pmscan::FindErrorCode;
using pmscan::kErrorCodes;

TEST_CASE("pmscan: every code of the module is in the table") {
  for (const std::uint32_t code :
       {1u, 7u, 8u, 9u, 10u, 13u, 14u, 15u, 16u, 22u, 31u, 34u, 35u, 43u}) {
    CAPTURE(code);
    CHECK(FindErrorCode(code).ExitCode() == static_cast<int>(code));
  }
}

TEST_CASE("pmscan: no two failures share a code or an exit code, and none exits with 0") {
  std::set<std::uint32_t> codes;
  std::set<int> exitCodes{0};
  for (const pmscan::ErrorCode& row : kErrorCodes) {
    CAPTURE(row.code);
    CHECK(codes.insert(row.code).second);
    CHECK(exitCodes.insert(row.ExitCode()).second);
    CHECK(row.ExitCode() < 256);
  }
}

TEST_CASE("pmscan: a code that the table does not list has an exit code of its own") {
  CHECK(FindErrorCode(99).ExitCode() == 63);
  CHECK(FindErrorCode(~0u).code == pmscan::kUnknownError);
}

TEST_CASE("pmscan: a failure tells its number, its meaning, the detail and what to do") {
  CHECK(pmscan::Describe(pmscan::Failure(13)) ==
        "pmscan: error 13: the document feeder is empty\n"
        "  Load paper into the feeder, then scan again.\n");
  CHECK(pmscan::Describe(pmscan::Failure(pmscan::kUsage, "There is no mode \"red\".")) ==
        "pmscan: error 64: the command line is not understood\n"
        "  There is no mode \"red\".\n"
        "  Read pmscan --help, or pmscan SUBCOMMAND --help.\n");
  CHECK(pmscan::Describe(pmscan::Failure(pmscan::kInterrupted, "Nothing was saved.")) ==
        "pmscan: error 130: the scan was interrupted\n"
        "  Nothing was saved.\n"
        "  Scan again when you like; the lines that came, if any, were kept.\n");
  CHECK(pmscan::Describe(pmscan::Failure(99)).starts_with("pmscan: error 99: "));
}

// The help without the breaks in the meanings that are too long for a line.
std::string HelpInWholeLines() {
  const std::string blanks = "\n       ";
  std::string help = pmscan::HelpText();
  for (std::size_t at = 0; (at = help.find(blanks, at)) != std::string::npos;) {
    if (help[at + blanks.size()] == ' ') {
      ++at;
    } else {
      help.replace(at, blanks.size(), " ");
    }
  }
  return help;
}

TEST_CASE("pmscan: the help page lists every exit code with its meaning") {
  const std::string help = HelpInWholeLines();
  for (const pmscan::ErrorCode& row : kErrorCodes) {
    const std::string line =
        std::to_string(row.ExitCode()) + "  " + std::string(row.meaning) + "\n";
    CAPTURE(line);
    CHECK(help.find(" " + line) != std::string::npos);
  }
}

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
                std::string(row.whatToDo) + " | " + std::to_string(row.ExitCode()) + " |");
  }
  CHECK(RowsOfDocument() == rows);
}

}  // namespace
