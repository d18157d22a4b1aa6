#include <doctest/doctest.h>

#include <set>
#include <string_view>
#include <utility>

#include "pmscan/scan/scan_mode.h"

namespace {

using pmscan::FindScanMode;
using pmscan::PixelLayout;

std::uint32_t BitsOf(PixelLayout layout) {
  switch (layout) {
    case PixelLayout::kBlackWhite:
      return 1;
    case PixelLayout::kGrey8:
    case PixelLayout::kPalette:
      return 8;
    case PixelLayout::kGrey16:
      return 16;
    case PixelLayout::kRgb48:
      return 48;
    default:
      return 24;
  }
}

TEST_CASE("pmscan: a mode is found by its name in any case and spelling, and only by that") {
  REQUIRE(FindScanMode("grey") != nullptr);
  CHECK(FindScanMode("grey")->pixelType == 2);
  CHECK(FindScanMode("") == nullptr);
  CHECK(FindScanMode("gre") == nullptr);
  for (const auto& spelling :
       {std::pair("GREY", "grey"), std::pair("gray", "grey"), std::pair("Color", "colour"),
        std::pair("color12", "colour12"), std::pair("Deep-Gray", "deep-grey"),
        std::pair("DEEP-COLOR", "deep-colour"), std::pair("LineArt", "lineart")}) {
    CAPTURE(spelling.first);
    REQUIRE(FindScanMode(spelling.first) != nullptr);
    CHECK(FindScanMode(spelling.first)->name == spelling.second);
  }
}

TEST_CASE("pmscan: no two modes have the same name or pixel type") {
  std::set<std::string_view> names;
  std::set<std::uint32_t> pixelTypes;
  for (const pmscan::ScanMode& mode : pmscan::kScanModes) {
    CHECK(names.insert(mode.name).second);
    CHECK(pixelTypes.insert(mode.pixelType).second);
  }
}

TEST_CASE("pmscan: every mode has its lines delivered from the top down") {
  for (const pmscan::ScanMode& mode : pmscan::kScanModes) {
    CAPTURE(mode.name);
    const std::uint32_t format = mode.outputFormat;
    CHECK((format == 1 || format == 3 || format == 5 || format == 6));
  }
}

TEST_CASE("pmscan: lines that are not packed lie in the picture as they are delivered") {
  for (const pmscan::ScanMode& mode : pmscan::kScanModes) {
    CAPTURE(mode.name);
    if (!mode.isPacked) CHECK(mode.bitsPerPixel == BitsOf(mode.layout));
  }
}

TEST_CASE("pmscan: colours come blue first where the picture wants them so, else red first") {
  for (const pmscan::ScanMode& mode : pmscan::kScanModes) {
    CAPTURE(mode.name);
    if (mode.layout == PixelLayout::kBgr24) CHECK(mode.outputFormat == pmscan::kBlueFirst);
    if (mode.layout == PixelLayout::kRgb48) CHECK(mode.outputFormat == pmscan::kRedFirst);
  }
}

}  // namespace
