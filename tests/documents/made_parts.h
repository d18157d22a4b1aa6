#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/documents/document.h"
#include "tests/documents/exchanges.h"
#include "tests/documents/table.h"

namespace documents {

// Makes what stands between the marks of documents. A table may stand in several pieces; a row that
// is in none of them goes into the last piece.
class MadeParts {
 public:
  explicit MadeParts(const std::vector<Document>& documents);

  // The document as it ought to be. To be called once for each document, in their order. Throws
  // DocumentError for a mark that names nothing or has no end.
  Document Renew(const Document& document);

  // Tables and exchanges that no document shows.
  std::vector<std::string> Unshown() const;

 private:
  using Lines = std::vector<std::string>;

  struct Pieces {
    Table table;
    std::size_t count = 0;  // over all documents
    std::size_t made = 0;
    std::vector<std::string> placed;  // names of rows
  };

  Lines Make(const Mark& mark, const Lines& before);
  Lines MakeTable(Pieces& pieces, const Lines& before);
  Pieces& PiecesOf(const std::string& name);

  std::map<std::string, Pieces> tables_;
  Exchanges exchanges_;
};

}  // namespace documents
