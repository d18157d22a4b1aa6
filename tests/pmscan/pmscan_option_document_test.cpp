#include <doctest/doctest.h>

#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "pmscan/command_line/help_text.h"
#include "pmscan/command_line/option_table.h"

namespace {

using pmscan::CommandRow;
using pmscan::OptionRow;

// Each option's row of the document, by its first cell, for each subcommand.
using DocumentRows = std::map<std::string, std::map<std::string, std::string>>;

std::vector<std::string> Cells(const std::string& row) {
  std::vector<std::string> cells;
  std::istringstream stream(row.substr(2));
  for (std::string cell; std::getline(stream, cell, '|');) {
    const std::size_t last = cell.find_last_not_of(' ');
    cells.push_back(last == std::string::npos ? "" : cell.substr(cell[0] == ' ', last));
    if (cell[0] != ' ') cells.back() = cell.substr(0, last + 1);
  }
  return cells;
}

std::string WithoutBackticks(std::string text) {
  std::erase(text, '`');
  return text;
}

// A table of options begins "| Option of scan |", or "| Option | Of |" with the subcommands in the
// second cell of each row.
DocumentRows ReadDocument() {
  std::ifstream document(PMSCAN_DOCUMENT);
  REQUIRE(document.is_open());
  DocumentRows rows;
  std::string commands;
  bool isTable = false;
  for (std::string line; std::getline(document, line);) {
    if (!line.starts_with("| ")) {
      isTable = isTable && line.starts_with("|");
      continue;
    }
    const std::vector<std::string> cells = Cells(line);
    if (cells[0].starts_with("Option")) {
      isTable = true;
      commands = cells[0] == "Option" ? "" : cells[0].substr(10);
    } else if (isTable) {
      std::istringstream names(commands.empty() ? cells[1] : commands);
      for (std::string name; std::getline(names, name, ',');) {
        rows[name.substr(name.find_first_not_of(' '))][WithoutBackticks(cells[0])] = line;
      }
    }
  }
  return rows;
}

std::set<std::string> OptionsOf(pmscan::Command command) {
  std::set<std::string> options;
  for (const OptionRow& row : pmscan::kOptions) {
    if ((row.commands & pmscan::Bit(command)) != 0) options.insert(pmscan::Synopsis(row));
  }
  return options;
}

// The words that an option takes.
std::vector<std::string> ChoicesOf(const OptionRow& row) {
  std::vector<std::string> words;
  std::istringstream stream(row.choices == nullptr ? "" : row.choices());
  for (std::string word; stream >> word;) words.push_back(word.substr(0, word.find(',')));
  return words;
}

std::string WholeDocument() {
  std::ostringstream text;
  text << std::ifstream(PMSCAN_DOCUMENT).rdbuf();
  return text.str();
}

TEST_CASE("pmscan: the document has every option of every subcommand, and no other") {
  const DocumentRows document = ReadDocument();
  for (const CommandRow& command : pmscan::kCommands) {
    CAPTURE(command.name);
    std::set<std::string> documented;
    const auto rows = document.find(std::string(command.name));
    if (rows != document.end()) {
      for (const auto& [option, row] : rows->second) documented.insert(option);
    }
    CHECK(documented == OptionsOf(command.command));
  }
}

TEST_CASE("pmscan: the document and the help tell the numbers that an option takes") {
  const DocumentRows document = ReadDocument();
  for (const OptionRow& row : pmscan::kOptions) {
    if (row.most == 0) continue;
    const std::string range = std::to_string(row.least) + " to " + std::to_string(row.most);
    const std::string text = document.at("scan").at(pmscan::Synopsis(row));
    CAPTURE(text);
    CHECK(text.find(range) != std::string::npos);
    CHECK(row.help.find(range) != std::string::npos);
  }
}

TEST_CASE("pmscan: the document tells every option of a scan that profiles do not keep") {
  const std::string text = ReadDocument().at("scan").at("--save-profile NAME");
  const std::string kept = text.substr(text.find("all but"));
  for (const OptionRow& row : pmscan::kOptions) {
    if ((row.commands & pmscan::Bit(pmscan::Command::kScan)) == 0) continue;
    const std::string name = "`" + std::string(pmscan::LongName(row)) + "`";
    CAPTURE(name);
    const bool isProfile = name.ends_with("profile`");
    const bool isLeftOut = row.kind == pmscan::OptionKind::kGiven && !isProfile;
    CHECK((kept.find(name) != std::string::npos) == isLeftOut);
  }
}

TEST_CASE("pmscan: the document and the help tell every word that an option takes") {
  const std::string document = WholeDocument();
  for (const OptionRow& row : pmscan::kOptions) {
    for (const std::string& word : ChoicesOf(row)) {
      CAPTURE(word);
      CHECK(document.find("`" + word + "`") != std::string::npos);
      CHECK(row.help.find(word) != std::string::npos);
    }
  }
}

TEST_CASE("pmscan: the document and the help tell every way to call the program") {
  const std::string document = WholeDocument();
  const std::string help = pmscan::HelpText();
  for (const CommandRow& row : pmscan::kCommands) {
    const std::string usage = "\npmscan " + std::string(row.name) + " " + std::string(row.usage);
    CAPTURE(usage);
    CHECK(document.find(usage) != std::string::npos);
    CHECK(help.find("  " + usage.substr(1)) != std::string::npos);
  }
}

TEST_CASE("pmscan: the help fits a terminal of 80 columns") {
  for (const CommandRow& row : pmscan::kCommands) {
    std::istringstream help(pmscan::HelpText() + pmscan::HelpText(row.command));
    for (std::string line; std::getline(help, line);) {
      CAPTURE(line);
      CHECK(line.size() <= 80);
    }
  }
}

TEST_CASE("pmscan: the help of all names the shared options that each other subcommand takes") {
  CHECK(pmscan::HelpText().find(
            "\nOf these options others take\n"
            "  devices --json\n"
            "  replay  --tolerant, --dll, --json, --capture, --capture-data, --overwrite\n"
            "  convert --overwrite\n"
            "  report  --overwrite\n"
            "  import  --overwrite\n") != std::string::npos);
}

TEST_CASE("pmscan: the help of all has the options of each subcommand's own") {
  const std::string help = pmscan::HelpText();
  for (const char* text : {"\nOptions of focus\n  --focus POSITION\n          where to: auto",
                           "\nOptions of decode\n  --json  print what was said as JSON",
                           "\nOptions of import\n  -o, --output FILE\n          the capture"}) {
    CAPTURE(text);
    CHECK(help.find(text) != std::string::npos);
  }
}

TEST_CASE("pmscan: the help of a subcommand speaks of no other") {
  for (const pmscan::Command command : {pmscan::Command::kFocus, pmscan::Command::kDecode,
                                        pmscan::Command::kReport, pmscan::Command::kImport}) {
    const std::string help = pmscan::HelpText(command);
    CHECK(help.find("nothing is scanned") == std::string::npos);
    CHECK(help.find("focus before") == std::string::npos);
  }
  CHECK(pmscan::HelpText(pmscan::Command::kDecode).find("the report") == std::string::npos);
}

TEST_CASE("pmscan: the help of a subcommand is about that subcommand") {
  const std::string help = pmscan::HelpText(pmscan::Command::kReplay);
  CHECK(help.starts_with("Synopsis\n  pmscan replay FILE [options]      play a capture"));
  CHECK(help.find("  --tolerant\n          go on behind a difference") != std::string::npos);
  CHECK(help.find("scan -o") == std::string::npos);
  CHECK(help.find("--mode") == std::string::npos);
}

}  // namespace
