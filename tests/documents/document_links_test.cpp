#include <doctest/doctest.h>

#include <cctype>
#include <map>
#include <regex>
#include <set>

#include "tests/documents/document.h"

namespace documents {
namespace {

namespace fs = std::filesystem;

// A line of text, not of a block of code.
template <class Take>
void ForEachTextLine(const Document& document, const Take& take) {
  bool isCode = false;
  for (const std::string& line : document.lines) {
    const bool isFence = line.find("```") != std::string::npos;
    if (isFence) isCode = !isCode;
    if (!isCode && !isFence) take(line);
  }
}

// The anchor that a heading has: lower case, blanks to hyphens, without punctuation.
std::string AnchorOf(const std::string& heading) {
  std::string anchor;
  for (const char letter : heading) {
    const auto byte = static_cast<unsigned char>(letter);
    if (std::isalnum(byte) != 0 || letter == '-' || letter == '_') {
      anchor += static_cast<char>(std::tolower(byte));
    } else if (letter == ' ') {
      anchor += '-';
    }
  }
  return anchor;
}

std::set<std::string> AnchorsOf(const Document& document) {
  std::set<std::string> anchors;
  ForEachTextLine(document, [&](const std::string& line) {
    const std::size_t text = line.find_first_not_of('#');
    if (text != 0 && text != std::string::npos) anchors.insert(AnchorOf(line.substr(text + 1)));
  });
  return anchors;
}

struct Link {
  std::string file;    // from the project's folder
  std::string anchor;  // may be empty
};

// The links that go to files of the project.
std::vector<Link> LinksOf(const Document& document) {
  static const std::regex pattern("\\]\\(([^)#]*)#?([^)]*)\\)");
  std::vector<Link> links;
  ForEachTextLine(document, [&](const std::string& line) {
    for (std::sregex_iterator at(line.begin(), line.end(), pattern), end; at != end; ++at) {
      const std::string target = (*at)[1];
      if (target.find("://") != std::string::npos) continue;
      const fs::path file = fs::path(document.name).parent_path() / target;
      const std::string name =
          target.empty() ? document.name : file.lexically_normal().generic_string();
      links.push_back({name, (*at)[2]});
    }
  });
  return links;
}

TEST_CASE("documents: every link goes to a file that is there, and to a heading of it") {
  std::map<std::string, std::set<std::string>> anchors;
  const std::vector<Document> found = ReadDocuments();
  for (const Document& document : found) anchors[document.name] = AnchorsOf(document);
  std::size_t links = 0;
  for (const Document& document : found) {
    for (const Link& link : LinksOf(document)) {
      CAPTURE(document.name);
      CAPTURE(link.file);
      CAPTURE(link.anchor);
      CHECK(fs::exists(ProjectFolder() / link.file));
      if (!link.anchor.empty()) CHECK(anchors[link.file].contains(link.anchor));
      ++links;
    }
  }
  CHECK(links > 60);
}

TEST_CASE("documents: each is found from the first one") {
  std::set<std::string> reached{"README.md"};
  const std::vector<Document> found = ReadDocuments();
  for (std::size_t before = 0; before != reached.size();) {
    before = reached.size();
    for (const Document& document : found) {
      if (!reached.contains(document.name)) continue;
      for (const Link& link : LinksOf(document)) reached.insert(link.file);
    }
  }
  for (const Document& document : found) {
    CAPTURE(document.name);
    CHECK(reached.contains(document.name));
  }
}

TEST_CASE("documents: a heading's anchor") {
  CHECK(AnchorOf("Gamma and halftone") == "gamma-and-halftone");
  CHECK(AnchorOf("What was said: `pmscan decode`") == "what-was-said-pmscan-decode");
}

}  // namespace
}  // namespace documents
