#include "tests/documents/quoted_test.h"

#include <algorithm>
#include <filesystem>
#include <regex>
#include <sstream>

#include "tests/documents/document.h"

namespace documents {
namespace {

std::string WholeText(const std::vector<std::string>& lines) {
  std::ostringstream text;
  for (const std::string& line : lines) text << line << '\n';
  return text.str();
}

// The literal's pieces put together.
std::string Unquoted(const std::string& literals) {
  static const std::regex piece("\"((?:[^\"\\\\]|\\\\.)*)\"");
  std::string text;
  for (std::sregex_iterator at(literals.begin(), literals.end(), piece), end; at != end; ++at) {
    text += (*at)[1].str();
  }
  return std::regex_replace(text, std::regex("\\\\(.)"), "$1");
}

void FindTestCases(const std::string& file, std::map<std::string, std::string>& found) {
  static const std::regex pattern(
      "TEST_CASE[A-Z_]*\\((?:\\s*\\w+,)?\\s*((?:\"(?:[^\"\\\\]|\\\\.)*\"\\s*)+)");
  const std::string text = WholeText(ReadLines(ProjectFolder() / file));
  for (std::sregex_iterator at(text.begin(), text.end(), pattern), end; at != end; ++at) {
    found.emplace(Unquoted((*at)[1].str()), file);
  }
}

std::map<std::string, std::string> FindAllTestCases() {
  std::map<std::string, std::string> found;
  const std::filesystem::path project = ProjectFolder();
  for (const auto& entry : std::filesystem::recursive_directory_iterator(project / "tests")) {
    const std::filesystem::path& file = entry.path();
    if (!file.filename().string().ends_with("_test.cpp")) continue;
    FindTestCases(file.lexically_relative(project).generic_string(), found);
  }
  return found;
}

}  // namespace

const std::map<std::string, std::string>& TestCases() {
  static const std::map<std::string, std::string> found = FindAllTestCases();
  return found;
}

std::vector<std::string> QuotedTest(const std::string& name) {
  const auto test = TestCases().find(name);
  if (test == TestCases().end()) throw DocumentError("no test case is called \"" + name + "\"");
  const std::vector<std::string> lines = ReadLines(ProjectFolder() / test->second);
  const std::string quotedName = '"' + name + '"';
  auto begin = std::find_if(lines.begin(), lines.end(), [&](const std::string& line) {
    return line.find(quotedName) != std::string::npos;
  });
  if (begin != lines.end() && !begin->starts_with("TEST_CASE")) --begin;
  const auto end = std::find(begin, lines.end(), "}");
  if (end == lines.end()) {
    throw DocumentError("\"" + name + "\" has a name of several lines; quote another test case");
  }
  std::vector<std::string> quoted{"// " + test->second};
  quoted.insert(quoted.end(), begin, end + 1);
  return quoted;
}

}  // namespace documents
