#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace documents {

// A document that cannot be made or kept. what() says what was expected, what came, what to do.
class DocumentError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct Document {
  std::string name;  // from the project's folder, as "docs/rules.md"
  std::vector<std::string> lines;
};

// The project's folder.
std::filesystem::path ProjectFolder();

std::vector<std::string> ReadLines(const std::filesystem::path& file);

// Every document of the project in the order of the names.
std::vector<Document> ReadDocuments();

// What stands between two lines that mark what is made:
//
//   <!-- table: halftones -->
//   ...
//   <!-- end -->
struct Mark {
  std::string kind;  // "table", "exchange" or "test"; empty for a line that is no mark
  std::string name;
};
inline constexpr const char* kEndMark = "<!-- end -->";

Mark MarkOf(const std::string& line);

}  // namespace documents
