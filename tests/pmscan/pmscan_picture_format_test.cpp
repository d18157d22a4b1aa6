#include <doctest/doctest.h>

#include <string>

#include "pmscan/pictures/picture_format.h"
#include "tests/pmscan/refusal.h"

namespace {

using pmscan::Container;
using pmscan::FormatByFileName;

std::string Outcome(const char* fileName, std::string_view mode) {
  return pmscan::tests::RefusalOf(
      [&] { pmscan::RequireHolds(FormatByFileName(fileName), *pmscan::FindScanMode(mode)); });
}

TEST_CASE("pmscan: the extension of a file's name tells the format, in either case") {
  CHECK(FormatByFileName("page.png").container == Container::kPng);
  CHECK(FormatByFileName("page.tif").container == Container::kTiff);
  CHECK(FormatByFileName("page.TIFF").container == Container::kTiff);
  CHECK(FormatByFileName("a.b/page.Bmp").container == Container::kBmp);
  CHECK(FormatByFileName("page.jpg").container == Container::kJpeg);
  CHECK(FormatByFileName("page.png.jpeg").container == Container::kJpeg);
}

TEST_CASE("pmscan: a file's name without a known extension is refused") {
  for (const std::string name : {"", "page", "png", "page.", "page.gif", "folder.png/page"}) {
    CAPTURE(name);
    CHECK_THROWS_AS(FormatByFileName(name), pmscan::Failure);
  }
}

TEST_CASE("pmscan: PNG, TIFF and PDF hold the pictures of every mode") {
  for (const pmscan::ScanMode& mode : pmscan::kScanModes) {
    CAPTURE(mode.name);
    CHECK_NOTHROW(pmscan::RequireHolds(FormatByFileName("a.png"), mode));
    CHECK_NOTHROW(pmscan::RequireHolds(FormatByFileName("a.tif"), mode));
    CHECK_NOTHROW(pmscan::RequireHolds(FormatByFileName("a.pdf"), mode));
  }
}

TEST_CASE("pmscan: a format that cannot hold the picture is refused with what to use instead") {
  CHECK(Outcome("a.jpg", "deep-colour") ==
        "65 JPEG files cannot hold colour, 48 bits: write a .png, .tif or .pdf file, or scan with "
        "--mode colour.");
  CHECK(Outcome("a.jpg", "lineart") != "accepted");
  CHECK(Outcome("a.jpg", "deep-grey") != "accepted");
  CHECK(Outcome("a.bmp", "deep-grey") != "accepted");
  CHECK(Outcome("a.bmp", "deep-colour") != "accepted");
}

TEST_CASE("pmscan: the other pictures fit JPEG and BMP") {
  for (const std::string_view mode : {"grey", "colour", "colour12"}) {
    CAPTURE(mode);
    CHECK(Outcome("a.jpg", mode) == "accepted");
    CHECK(Outcome("a.bmp", mode) == "accepted");
  }
  CHECK(Outcome("a.bmp", "lineart") == "accepted");
}

}  // namespace
