#include <doctest/doctest.h>

#include <string>

#include "pmscan/scan/scan_area.h"
#include "tests/pmscan/refusal.h"

namespace {

using pmscan::BedSize;
using pmscan::ParseArea;
using pmscan::PixelArea;
using pmscan::PlaceArea;

constexpr BedSize kBed{850, 1169};

std::string Outcome(const char* area, const BedSize& bed) {
  return pmscan::tests::RefusalOf([&] { PlaceArea(ParseArea(area), bed, 300); });
}

TEST_CASE("pmscan: an area is four lengths, each with a unit of its own") {
  const PixelArea area = PlaceArea(ParseArea("1in,1in,50mm,2in"), kBed, 300);
  CHECK(area.left == 300);
  CHECK(area.top == 300);
  CHECK(area.width == 591);
  CHECK(area.height == 600);
}

TEST_CASE("pmscan: an area has neither more nor fewer than four lengths") {
  for (const std::string_view text :
       {"1in,1in,1in", "1in,1in,1in,1in,1in", "1in", ",,,", "1in,1in,1in,"}) {
    CAPTURE(text);
    CHECK_THROWS_AS(ParseArea(text), pmscan::Failure);
  }
}

TEST_CASE("pmscan: without an area the whole bed is scanned") {
  const PixelArea area = PlaceArea(std::nullopt, kBed, 300);
  CHECK(area.left == 0);
  CHECK(area.top == 0);
  CHECK(area.width == 2550);
  CHECK(area.height == 3507);
}

TEST_CASE("pmscan: an area that reaches less than 1/100 inch beyond the bed is trimmed to it") {
  const PixelArea area = PlaceArea(ParseArea("0mm,0mm,210mm,297mm"), kBed, 300);
  CHECK(area.width == 2480);
  CHECK(area.height == 3507);  // 297 mm are 3508 pixels
}

TEST_CASE("pmscan: an area beyond the bed is refused with the bed's size") {
  CHECK(Outcome("8in,0in,1in,1in", kBed) ==
        "65 The area reaches beyond the source, which is 8.50 x 11.69 in (215.9 x 296.9 mm).");
  CHECK(Outcome("0in,11in,1in,1in", kBed).starts_with("65 The area reaches beyond"));
  CHECK(Outcome("2000000000px,0in,2000000000px,1in", kBed).starts_with("65 The area reaches"));
}

TEST_CASE("pmscan: an area that ends at the bed's edge is not beyond it") {
  CHECK(Outcome("7.5in,10.69in,1in,1in", kBed) == "accepted");
}

TEST_CASE("pmscan: an empty area is refused") {
  CHECK(Outcome("0in,0in,0in,1in", kBed).starts_with("65 The area is empty"));
  CHECK(Outcome("0in,0in,1in,0.001in", kBed).starts_with("65 The area is empty"));
}

TEST_CASE("pmscan: an area that begins where the bed ends is refused") {
  CHECK(Outcome("2550px,0px,1px,1px", kBed).starts_with("65 The area reaches beyond"));
}

}  // namespace
