// Makes the tables and exchanges in the documents anew: what stands between the marks in README.md,
// CONTRIBUTING.md and docs.
#include <cstdio>
#include <exception>
#include <fstream>

#include "tests/documents/made_parts.h"

namespace {

void Write(const documents::Document& document) {
  std::ofstream stream(documents::ProjectFolder() / document.name);
  for (const std::string& line : document.lines) stream << line << '\n';
  std::printf("%s is made anew\n", document.name.c_str());
}

}  // namespace

int main() {
  try {
    const std::vector<documents::Document> found = documents::ReadDocuments();
    documents::MadeParts made(found);
    for (const documents::Document& document : found) {
      const documents::Document renewed = made.Renew(document);
      if (renewed.lines != document.lines) Write(renewed);
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
