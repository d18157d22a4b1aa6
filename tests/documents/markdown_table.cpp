#include "tests/documents/markdown_table.h"

#include <algorithm>

namespace documents {
namespace {

std::string Trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

Row Behind(const Row& cells, std::size_t made) {
  const std::size_t first = std::min(made, cells.size());
  return {cells.begin() + static_cast<std::ptrdiff_t>(first), cells.end()};
}

std::string LineOf(Row cells, const Row& more) {
  cells.insert(cells.end(), more.begin(), more.end());
  std::string line = "|";
  for (const std::string& cell : cells) line += " " + cell + " |";
  return line;
}

}  // namespace

Row CellsOf(const std::string& line) {
  Row cells;
  if (!line.starts_with("|")) return cells;
  std::size_t begin = 1;
  for (std::size_t end = line.find('|', begin); end != std::string::npos;
       end = line.find('|', begin)) {
    cells.push_back(Trimmed(line.substr(begin, end - begin)));
    begin = end + 1;
  }
  return cells;
}

MarkdownTable::MarkdownTable(const std::vector<std::string>& lines, std::size_t madeColumns)
    : madeColumns_(madeColumns) {
  for (const std::string& line : lines) {
    if (Row cells = CellsOf(line); !cells.empty()) rows_.push_back(std::move(cells));
  }
  if (rows_.empty()) return;
  writtenHeader_ = Behind(rows_.front(), madeColumns);
  rows_.erase(rows_.begin(), rows_.begin() + std::min<std::ptrdiff_t>(2, std::ssize(rows_)));
}

std::vector<std::string> MarkdownTable::Names() const {
  std::vector<std::string> names;
  for (const Row& row : rows_) names.push_back(row.front());
  return names;
}

Row MarkdownTable::WrittenCells(const std::string& name) const {
  Row written;
  for (const Row& row : rows_) {
    if (row.front() == name) written = Behind(row, madeColumns_);
  }
  written.resize(writtenHeader_.size());
  return written;
}

std::vector<std::string> MarkdownTable::Lines(const Table& declared,
                                              const std::vector<std::string>& names) const {
  std::vector<std::string> lines{LineOf(declared.header, writtenHeader_), "|"};
  for (std::size_t i = 0; i < declared.header.size() + writtenHeader_.size(); ++i) {
    lines.back() += "---|";
  }
  for (const Row& row : declared.rows) {
    if (std::find(names.begin(), names.end(), row.front()) == names.end()) continue;
    lines.push_back(LineOf(row, WrittenCells(row.front())));
  }
  return lines;
}

}  // namespace documents
