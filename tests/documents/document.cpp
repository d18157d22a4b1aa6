#include "tests/documents/document.h"

#include <algorithm>
#include <fstream>
#include <regex>

namespace documents {
namespace {

Document ReadDocument(const std::filesystem::path& file) {
  return {file.lexically_relative(ProjectFolder()).generic_string(), ReadLines(file)};
}

}  // namespace

std::filesystem::path ProjectFolder() {
  return PMDDB832_PROJECT;
}

std::vector<std::string> ReadLines(const std::filesystem::path& file) {
  std::ifstream stream(file);
  if (!stream.is_open()) throw DocumentError(file.string() + ": cannot be read");
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::vector<Document> ReadDocuments() {
  std::vector<Document> found;
  for (const auto& entry : std::filesystem::directory_iterator(ProjectFolder())) {
    if (entry.path().extension() == ".md") found.push_back(ReadDocument(entry.path()));
  }
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(ProjectFolder() / "docs")) {
    if (entry.path().extension() == ".md") found.push_back(ReadDocument(entry.path()));
  }
  std::sort(found.begin(), found.end(),
            [](const Document& left, const Document& right) { return left.name < right.name; });
  return found;
}

Mark MarkOf(const std::string& line) {
  static const std::regex pattern("<!-- (table|exchange|test): (.*) -->");
  std::smatch match;
  if (!std::regex_match(line, match, pattern)) return {};
  return {match[1], match[2]};
}

}  // namespace documents
