#pragma once

#include <string>
#include <vector>

#include "tests/documents/table.h"

namespace documents {

// "| a | b |" is {"a", "b"}. A line that begins with something else is no row: nothing.
Row CellsOf(const std::string& line);

// A table as it stands in a document: the cells that are made, and those that people wrote behind
// them.
class MarkdownTable {
 public:
  // Takes the lines between the marks; `madeColumns` of them are made.
  MarkdownTable(const std::vector<std::string>& lines, std::size_t madeColumns);

  // Names of the rows, from their first cells.
  std::vector<std::string> Names() const;

  // The rows of these names, in the order in which they are declared, with the cells that people
  // wrote. A row that nobody wrote anything to has empty ones.
  std::vector<std::string> Lines(const Table& declared,
                                 const std::vector<std::string>& names) const;

 private:
  Row WrittenCells(const std::string& name) const;

  std::size_t madeColumns_;
  Row writtenHeader_;
  std::vector<Row> rows_;
};

}  // namespace documents
