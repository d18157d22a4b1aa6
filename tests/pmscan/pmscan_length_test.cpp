#include <doctest/doctest.h>

#include "pmscan/command_line/length.h"
#include "tests/pmscan/refusal.h"

namespace {

using pmscan::LengthUnit;
using pmscan::ParseLength;
using pmscan::ToPixels;

TEST_CASE("pmscan: units are found in any case") {
  CHECK(pmscan::ParseLength("2IN").unit == pmscan::LengthUnit::kInch);
  CHECK(pmscan::ParseLength("5 Mm").unit == pmscan::LengthUnit::kMillimetre);
}

TEST_CASE("pmscan: a length is a number and one of four units") {
  CHECK(ParseLength("1.5in").unit == LengthUnit::kInch);
  CHECK(ParseLength("1.5in").amount == 1.5);
  CHECK(ParseLength("50mm").unit == LengthUnit::kMillimetre);
  CHECK(ParseLength("2cm").unit == LengthUnit::kCentimetre);
  CHECK(ParseLength("300px").unit == LengthUnit::kPixel);
}

TEST_CASE("pmscan: blanks around the number and the unit of a length do not count") {
  CHECK(ParseLength(" 50 mm ").amount == 50);
  CHECK(ParseLength(" 50 mm ").unit == LengthUnit::kMillimetre);
}

TEST_CASE("pmscan: what is not a number with its unit is no length") {
  for (const std::string_view text : {"", " ", "in", "1", "1 foot", "1inch", "-1in", "1,5in",
                                      "nanin", "infmm", "1e999in", "1in2"}) {
    CAPTURE(text);
    CHECK(pmscan::tests::CodeOf([&] { ParseLength(text); }) == pmscan::kUsage);
  }
}

TEST_CASE("pmscan: a length in pixels is the nearest whole pixel at the resolution") {
  CHECK(ToPixels(ParseLength("8.5in"), 300) == 2550);
  CHECK(ToPixels(ParseLength("25.4mm"), 600) == 600);
  CHECK(ToPixels(ParseLength("2.54cm"), 600) == 600);
  CHECK(ToPixels(ParseLength("50mm"), 300) == 591);  // 590.55
  CHECK(ToPixels(ParseLength("297mm"), 300) == 3508);
}

TEST_CASE("pmscan: a length given in pixels is the same at every resolution") {
  CHECK(ToPixels(ParseLength("17px"), 100) == 17);
  CHECK(ToPixels(ParseLength("17px"), 2400) == 17);
}

TEST_CASE("pmscan: a length that no scanner can address is refused") {
  CHECK_THROWS_AS(ToPixels(ParseLength("1e30in"), 300), pmscan::Failure);
}

TEST_CASE("pmscan: sizes are told in inches and in millimetres") {
  CHECK(pmscan::FormatSize(8.5, 11.7) == "8.50 x 11.70 in (215.9 x 297.2 mm)");
}

}  // namespace
