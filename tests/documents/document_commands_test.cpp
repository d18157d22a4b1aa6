#include <doctest/doctest.h>

#include <algorithm>
#include <regex>
#include <set>

#include "pmscan/command_line/command_line.h"
#include "tests/documents/document.h"
#include "tests/pmscan/test_folder.h"

namespace documents {
namespace {

namespace fs = std::filesystem;

// As a shell cuts them: a word in quotes may hold blanks.
std::vector<std::string> WordsOf(const std::string& line) {
  static const std::regex pattern("\"([^\"]*)\"|[^ \"]+");
  std::vector<std::string> words;
  for (std::sregex_iterator at(line.begin(), line.end(), pattern), end; at != end; ++at) {
    words.push_back((*at)[1].matched ? (*at)[1] : (*at)[0]);
  }
  return words;
}

// The command without its remark, which stands behind two blanks or "#".
std::string WithoutRemark(const std::string& line) {
  return line.substr(0, std::min(line.find(" #"), line.find("  ")));
}

// A line that shows what may stand in a command rather than a command.
bool IsSynopsis(const std::string& line) {
  return line.find('[') != std::string::npos || std::regex_search(line, std::regex(" [A-Z]{4,}"));
}

// The commands of a program in the blocks of code, typed as they stand there.
std::vector<std::string> CommandsOf(const Document& document, const std::string& program) {
  std::vector<std::string> commands;
  bool isCode = false;
  for (std::string line : document.lines) {
    if (line.starts_with("```")) isCode = !isCode;
    if (line.starts_with("> ")) line = line.substr(2);
    if (isCode && line.starts_with(program + " ") && !IsSynopsis(line)) {
      commands.push_back(WithoutRemark(line));
    }
  }
  return commands;
}

TEST_CASE("documents: pmscan understands every command as it stands there") {
  std::size_t understood = 0;
  for (const Document& document : ReadDocuments()) {
    const pmscan::tests::TestFolder profiles("document_profiles");
    for (const std::string& command : CommandsOf(document, "pmscan")) {
      CAPTURE(document.name);
      CAPTURE(command);
      std::vector<std::string> words = WordsOf(command);
      words.erase(words.begin());
      pmscan::Options options;
      CHECK_NOTHROW(options = pmscan::ParseCommandLine(words, profiles.path));
      if (!options.savedProfile.empty()) {
        pmscan::SaveProfile(profiles.path, options.savedProfile, options.keptOptions, false);
      }
      ++understood;
    }
  }
  CHECK(understood > 20);
}

TEST_CASE("documents: every script that they name is there and can be run") {
  static const std::regex pattern("(^|[^A-Za-z/])(scripts/[a-z][a-z-]*|\\.ci/run)");
  std::set<std::string> named;
  for (const Document& document : ReadDocuments()) {
    for (const std::string& line : document.lines) {
      for (std::sregex_iterator at(line.begin(), line.end(), pattern), end; at != end; ++at) {
        named.insert((*at)[2].str());
      }
    }
  }
  CHECK(named.size() > 10);
  for (const std::string& script : named) {
    CAPTURE(script);
    REQUIRE(fs::exists(ProjectFolder() / script));
    CHECK((fs::status(ProjectFolder() / script).permissions() & fs::perms::owner_exec) !=
          fs::perms::none);
  }
}

std::string WholeText(const fs::path& file) {
  std::string text;
  for (const std::string& line : ReadLines(file)) text += line + "\n";
  return text;
}

TEST_CASE("documents: every preset that they name is one") {
  const std::string presets = WholeText(ProjectFolder() / "CMakePresets.json");
  static const std::regex pattern("(--preset|scripts/build|scripts/configure) ([a-z]+)");
  std::size_t named = 0;
  for (const Document& document : ReadDocuments()) {
    for (const std::string& line : document.lines) {
      for (std::sregex_iterator at(line.begin(), line.end(), pattern), end; at != end; ++at) {
        CAPTURE(line);
        CHECK(presets.find("\"name\": \"" + (*at)[2].str() + "\"") != std::string::npos);
        ++named;
      }
    }
  }
  CHECK(named > 5);
}

// "`wire/commands.h`", "`docs/pictures`": names in backticks that begin with a folder of ours.
TEST_CASE("documents: every file and folder of the sources that they name is there") {
  static const std::regex pattern(
      "`((bench|capture|cmake|docs|extended|fuzz|imaging|interface|platform|pmscan|scripts|"
      "simulator|standard|tests|transport|wire)/[A-Za-z0-9_./-]*)`");
  std::size_t named = 0;
  for (const Document& document : ReadDocuments()) {
    for (const std::string& line : document.lines) {
      for (std::sregex_iterator at(line.begin(), line.end(), pattern), end; at != end; ++at) {
        CAPTURE(document.name);
        CAPTURE(line);
        CHECK(fs::exists(ProjectFolder() / (*at)[1].str()));
        ++named;
      }
    }
  }
  CHECK(named > 50);
}

}  // namespace
}  // namespace documents
