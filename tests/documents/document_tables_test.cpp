#include <doctest/doctest.h>

#include "tests/documents/made_parts.h"
#include "tests/documents/markdown_table.h"

namespace documents {
namespace {

using Lines = std::vector<std::string>;

// The first line that is not the same, and where it stands.
std::string Difference(const Document& document, const Document& renewed) {
  std::size_t i = 0;
  while (i < document.lines.size() && i < renewed.lines.size() &&
         document.lines[i] == renewed.lines[i]) {
    ++i;
  }
  const auto line = [i](const Lines& lines) { return i < lines.size() ? lines[i] : "the end"; };
  return document.name + ", line " + std::to_string(i + 1) + ": expected \"" + line(renewed.lines) +
         "\", there is \"" + line(document.lines) + "\"; run scripts/documents";
}

TEST_CASE("documents: what is made in them is what the code says now") {
  const std::vector<Document> found = ReadDocuments();
  MadeParts made(found);
  for (const Document& document : found) {
    const Document renewed = made.Renew(document);
    if (renewed.lines != document.lines) FAIL_CHECK(Difference(document, renewed));
  }
  CHECK(Join(made.Unshown(), ", ") == "");
}

TEST_CASE("documents: no cell of a table is empty") {
  std::size_t rows = 0;
  for (const Document& document : ReadDocuments()) {
    if (!document.name.starts_with("docs/protocol/") &&
        document.name != "docs/settings-record.md") {
      continue;
    }
    for (std::size_t i = 0; i < document.lines.size(); ++i) {
      const Row cells = CellsOf(document.lines[i]);
      CAPTURE(document.name);
      CAPTURE(document.lines[i]);
      // The corner of a table may be empty.
      for (std::size_t cell = 1; cell < cells.size(); ++cell) CHECK(!cells[cell].empty());
      if (!cells.empty()) ++rows;
    }
  }
  CHECK(rows > 200);
}

const Table kFruit{"fruit", {"Name", "Colour"}, {{"apple", "red"}, {"plum", "blue"}}};

TEST_CASE("documents: a table keeps what people wrote, and takes the rest from its declaration") {
  const MarkdownTable table({"| Name | Colour | Taste |", "|---|---|---|",
                             "| plum | green | sweet |", "| apple | | sour |"},
                            2);
  CHECK(table.Lines(kFruit, table.Names()) == Lines{"| Name | Colour | Taste |", "|---|---|---|",
                                                    "| apple | red | sour |",
                                                    "| plum | blue | sweet |"});
}

TEST_CASE("documents: a row that is declared anew waits for words, one that is gone is dropped") {
  const MarkdownTable table(
      {"| Name | Colour | Taste |", "|---|---|---|", "| pear | green | sweet |"}, 2);
  CHECK(table.Lines(kFruit, {"pear", "apple"}) ==
        Lines{"| Name | Colour | Taste |", "|---|---|---|", "| apple | red |  |"});
}

TEST_CASE("documents: a mark without an end, or of something that is not there, is told") {
  const Document open{"a.md", {"text", "<!-- table: halftones -->", "more"}};
  CHECK_THROWS_WITH_AS(MadeParts({open}), "a.md, line 2: expected <!-- end --> behind this mark",
                       DocumentError);
  const Document unknown{"a.md", {"<!-- exchange: nothing -->", "<!-- end -->"}};
  CHECK_THROWS_WITH_AS(MadeParts({unknown}).Renew(unknown),
                       "a.md, line 1: no scene is called \"nothing\"", DocumentError);
  const Document noTest{"a.md", {"<!-- test: nothing -->", "<!-- end -->"}};
  CHECK_THROWS_WITH_AS(MadeParts({noTest}).Renew(noTest),
                       "a.md, line 1: no test case is called \"nothing\"", DocumentError);
}

}  // namespace
}  // namespace documents
