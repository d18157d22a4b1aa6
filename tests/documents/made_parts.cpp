#include "tests/documents/made_parts.h"

#include <algorithm>

#include "tests/documents/markdown_table.h"
#include "tests/documents/quoted_test.h"

namespace documents {
namespace {

using Lines = std::vector<std::string>;

std::string PlaceOf(const Document& document, std::size_t line) {
  return document.name + ", line " + std::to_string(line + 1);
}

std::size_t EndOf(const Document& document, std::size_t begin) {
  const auto from = document.lines.begin() + static_cast<std::ptrdiff_t>(begin);
  const auto end = std::find(from, document.lines.end(), kEndMark);
  if (end != document.lines.end()) return static_cast<std::size_t>(end - document.lines.begin());
  throw DocumentError(PlaceOf(document, begin) + ": expected " + kEndMark + " behind this mark");
}

Lines Between(const Document& document, std::size_t begin, std::size_t end) {
  const auto first = document.lines.begin() + static_cast<std::ptrdiff_t>(begin);
  return {first, document.lines.begin() + static_cast<std::ptrdiff_t>(end)};
}

Lines Fenced(const std::string& language, const Lines& lines) {
  Lines fenced{"```" + language};
  fenced.insert(fenced.end(), lines.begin(), lines.end());
  fenced.emplace_back("```");
  return fenced;
}

}  // namespace

MadeParts::MadeParts(const std::vector<Document>& documents) {
  for (Table& table : DeclaredTables()) {
    const std::string name = table.name;
    tables_[name].table = std::move(table);
  }
  for (const Document& document : documents) {
    for (std::size_t i = 0; i < document.lines.size(); ++i) {
      const Mark mark = MarkOf(document.lines[i]);
      if (mark.kind != "table") continue;
      Pieces& pieces = PiecesOf(mark.name);
      ++pieces.count;
      const MarkdownTable table(Between(document, i + 1, EndOf(document, i)),
                                pieces.table.header.size());
      for (const std::string& name : table.Names()) pieces.placed.push_back(name);
    }
  }
}

MadeParts::Pieces& MadeParts::PiecesOf(const std::string& name) {
  const auto found = tables_.find(name);
  if (found != tables_.end()) return found->second;
  std::string names;
  for (const auto& [known, pieces] : tables_) names += " " + known;
  throw DocumentError("no table is called \"" + name + "\"; there are:" + names);
}

Document MadeParts::Renew(const Document& document) {
  Document renewed{document.name, {}};
  for (std::size_t i = 0; i < document.lines.size(); ++i) {
    renewed.lines.push_back(document.lines[i]);
    const Mark mark = MarkOf(document.lines[i]);
    if (mark.kind.empty()) continue;
    const std::size_t end = EndOf(document, i);
    try {
      const Lines made = Make(mark, Between(document, i + 1, end));
      renewed.lines.insert(renewed.lines.end(), made.begin(), made.end());
    } catch (const DocumentError& error) {
      throw DocumentError(PlaceOf(document, i) + ": " + error.what());
    }
    renewed.lines.emplace_back(kEndMark);
    i = end;
  }
  return renewed;
}

Lines MadeParts::Make(const Mark& mark, const Lines& before) {
  if (mark.kind == "table") return MakeTable(PiecesOf(mark.name), before);
  if (mark.kind == "exchange") return Fenced("", exchanges_.Tell(mark.name));
  return Fenced("cpp", QuotedTest(mark.name));
}

Lines MadeParts::MakeTable(Pieces& pieces, const Lines& before) {
  const MarkdownTable table(before, pieces.table.header.size());
  std::vector<std::string> names = table.Names();
  if (++pieces.made == pieces.count) {
    for (const Row& row : pieces.table.rows) {
      const bool isPlaced =
          std::find(pieces.placed.begin(), pieces.placed.end(), row.front()) != pieces.placed.end();
      if (!isPlaced) names.push_back(row.front());
    }
  }
  return table.Lines(pieces.table, names);
}

std::vector<std::string> MadeParts::Unshown() const {
  std::vector<std::string> unshown = exchanges_.Untold();
  for (const auto& [name, pieces] : tables_) {
    if (pieces.count == 0) unshown.push_back(name);
  }
  return unshown;
}

}  // namespace documents
