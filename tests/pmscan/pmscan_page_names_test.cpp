#include <doctest/doctest.h>

#include <string>

#include "pmscan/scan/page_names.h"
#include "tests/pmscan/refusal.h"
#include "tests/pmscan/test_folder.h"

namespace {

using pmscan::FirstOccupied;
using pmscan::PageNames;

struct Folder : pmscan::tests::TestFolder {
  Folder() : TestFolder("pmscan_page_names") {}
  void Make(const std::string& name) const { Write(name, "x"); }
};

TEST_CASE("pmscan: the page's number takes its place in the name, with leading zeros if asked") {
  CHECK(PageNames::Numbered("page%03d.png").Of(7) == "page007.png");
  CHECK(PageNames::Numbered("page%03d.png").Of(1234) == "page1234.png");
  CHECK(PageNames::Numbered("%d.tif").Of(12) == "12.tif");
  CHECK(PageNames::Numbered("100%%_%02d.png").Of(3) == "100%_03.png");
}

TEST_CASE("pmscan: a pattern for file names has exactly one number, and in the file's own name") {
  for (const std::string_view pattern :
       {"page.png", "%d%d.png", "%s.png", "%3d.png", "%0d.png", "%00d.png", "%", "a%", "%010d.png",
        "%%.png", "%d/page.png", "%d\\page.png"}) {
    CAPTURE(pattern);
    CHECK(pmscan::tests::CodeOf([&] { PageNames::Numbered(pattern); }) == pmscan::kUsage);
  }
}

TEST_CASE("pmscan: all pages of one file have its name, percent signs and all") {
  const PageNames names = PageNames::Single("100%d.tif");
  CHECK(!names.AreNumbered());
  CHECK(names.Of(1) == "100%d.tif");
  CHECK(names.Of(2) == "100%d.tif");
}

TEST_CASE_FIXTURE(Folder, "pmscan: nothing is occupied in a folder without such names") {
  Make("page.png");
  Make("pageant.png");
  Make("page1.tif");
  CHECK(!FirstOccupied(PageNames::Numbered(Name("page%d.png")), std::nullopt));
  CHECK(!FirstOccupied(PageNames::Single(Name("other.png")), 1));
}

TEST_CASE_FIXTURE(Folder, "pmscan: the lowest page whose file is there is the one that is named") {
  Make("page012.png");
  Make("page003.png");
  CHECK(FirstOccupied(PageNames::Numbered(Name("page%03d.png")), std::nullopt) ==
        Name("page003.png"));
}

TEST_CASE_FIXTURE(Folder, "pmscan: files beyond the last page are no obstacle") {
  Make("page003.png");
  CHECK(!FirstOccupied(PageNames::Numbered(Name("page%03d.png")), 2));
  CHECK(FirstOccupied(PageNames::Numbered(Name("page%03d.png")), 3) == Name("page003.png"));
}

TEST_CASE_FIXTURE(Folder, "pmscan: a file that is growing occupies its place") {
  Make("page.png.part");
  Make("page2.png.part");
  CHECK(FirstOccupied(PageNames::Single(Name("page.png")), 1) == Name("page.png.part"));
  CHECK(FirstOccupied(PageNames::Numbered(Name("page%d.png")), 2) == Name("page2.png.part"));
}

TEST_CASE("pmscan: a folder that does not exist holds nothing") {
  CHECK(!FirstOccupied(PageNames::Numbered("no/such/folder/%d.png"), std::nullopt));
}

}  // namespace
