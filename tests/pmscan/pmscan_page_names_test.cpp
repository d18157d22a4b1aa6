#include <doctest/doctest.h>

#ifndef _WIN32
#include <sys/stat.h>
#endif

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

TEST_CASE_FIXTURE(Folder, "pmscan: a picture takes the place of a regular file only") {
  const auto refusal = [&](const PageNames& names) {
    return pmscan::tests::RefusalOf([&] { pmscan::RequireRoom(names, std::nullopt, true); });
  };
  Make("page.png");
  CHECK(refusal(PageNames::Single(Name("page.png"))) == "accepted");
  std::filesystem::create_directories(Name("dir.png"));
  std::filesystem::create_directories(Name("page2.tif"));
  CHECK(refusal(PageNames::Single(Name("dir.png"))) == "73 " + Name("dir.png") + " is a folder.");
  CHECK(refusal(PageNames::Numbered(Name("page%d.tif"))) ==
        "73 " + Name("page2.tif") + " is a folder.");
  CHECK(refusal(PageNames::Single(Name("no/page.png"))) ==
        "73 there is no folder " + Name("no") + ".");
}

TEST_CASE_FIXTURE(Folder, "pmscan: a file is one of a batch when its name has the page's number") {
  const PageNames names = PageNames::Numbered(Name("page%03d.png"));
  CHECK(names.Include(Name("page012.png")));
  CHECK(names.Include(Name("./page1234.png")));
  CHECK(!names.Include(Name("page12.png")));
  CHECK(!names.Include(Name("page000.png")));
  CHECK(!names.Include(Name("page012.tif")));
  CHECK(PageNames::Single(Name("a.png")).Include(Name("no/../a.png")));
  CHECK(!PageNames::Single("-").Include("-"));
}

#ifndef _WIN32
TEST_CASE_FIXTURE(Folder, "pmscan: a picture grows beside what its link leads to") {
  Make("far/kept.png");
  std::filesystem::create_symlink("far/kept.png", Name("near.png"));
  std::filesystem::create_symlink("near.png", Name("nearer.png"));
  std::filesystem::create_symlink("far/new.png", Name("dangling.png"));
  CHECK(pmscan::GrowingName(Name("nearer.png")) == Name("far/kept.png.part"));
  CHECK(pmscan::GrowingName(Name("dangling.png")) == Name("far/new.png.part"));
}

TEST_CASE_FIXTURE(Folder, "pmscan: a picture does not take the place of a pipe, nor of a ring") {
  Make("page.png");
  std::filesystem::create_symlink("ring.png", Name("ring.png"));
  REQUIRE(mkfifo(Name("page2.png").c_str(), S_IRUSR | S_IWUSR) == 0);
  CHECK(pmscan::tests::RefusalOf([&] {
          pmscan::RequireRoom(PageNames::Numbered(Name("page%d.png")), 2, true);
        }) == "73 " + Name("page2.png") + " is no regular file.");
  CHECK(pmscan::tests::RefusalOf([&] {
          pmscan::RequireRoom(PageNames::Single(Name("ring.png")), 1, true);
        }) == "73 " + Name("ring.png") + " is a link that leads in a circle.");
}
#endif

TEST_CASE("pmscan: a folder that does not exist holds nothing") {
  CHECK(!FirstOccupied(PageNames::Numbered("no/such/folder/%d.png"), std::nullopt));
}

}  // namespace
