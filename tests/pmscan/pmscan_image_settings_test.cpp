#include <doctest/doctest.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "pmscan/scan/scan_plan.h"
#include "pmscan/settings/image_settings.h"
#include "tests/pmscan/refusal.h"

// What the image settings make of the settings record, and which scanner has them.

namespace {

using pmddb832::ScannerSettings;
using pmscan::ImageSettings;

struct Level {
  const char* text;
  std::uint32_t code;
  std::uint16_t halftones;
};
constexpr Level kStandardLevels[]{{"B3", 1, 4},  {"B4", 2, 8},  {"B5", 3, 9},  {"A5", 4, 9},
                                  {"B6", 6, 10}, {"B7", 7, 10}, {"B8", 8, 10}, {"B9", 6, 10}};

ScannerSettings ScannerOf(const Level& level, bool isExtended = false) {
  ScannerSettings settings{};
  settings.scanInfoVariant = isExtended ? 3 : 2;
  settings.commandLevel = level.code;
  std::copy_n(level.text, 2, settings.commandLevelText);
  settings.halftoneInfo = level.halftones;
  return settings;
}

// The standard levels, as "B3 B4", that have what is asked for; extended B8 must have it.
std::string Having(const ImageSettings& image) {
  std::string levels;
  for (const Level& level : kStandardLevels) {
    const bool has =
        pmscan::tests::CodeOf([&] { RequireImageSettings(image, ScannerOf(level)); }) == 0;
    if (has) levels.append(levels.empty() ? "" : " ").append(level.text);
  }
  CHECK_NOTHROW(RequireImageSettings(image, ScannerOf({"B8", 8, 10}, true)));
  return levels;
}

ImageSettings With(void (*change)(ImageSettings&)) {
  ImageSettings image;
  change(image);
  return image;
}

pmscan::GammaTables ThreeTables() {
  pmscan::GammaTables tables;
  tables.red.fill(1);
  tables.green.fill(2);
  tables.blue.fill(3);
  return tables;
}

constexpr const char* kAll = "B3 B4 B5 A5 B6 B7 B8 B9";

TEST_CASE("pmscan: a level has the image settings that the module sends to it") {
  CHECK(Having({}) == kAll);
  CHECK(Having(With([](ImageSettings& i) { i.threshold = 9; })) == "B8");
  CHECK(Having(With([](ImageSettings& i) { i.halftone = 3; })) == kAll);
  CHECK(Having(With([](ImageSettings& i) { i.halftone = 7; })) == "B4 B5 A5 B6 B7 B8 B9");
  CHECK(Having(With([](ImageSettings& i) { i.halftone = 8; })) == "B5 A5 B6 B7 B8 B9");
  CHECK(Having(With([](ImageSettings& i) { i.halftone = 9; })) == "B6 B7 B8 B9");
  CHECK(Having(With([](ImageSettings& i) { i.brightness = -3; })) == kAll);
  CHECK(Having(With([](ImageSettings& i) { i.gamma = 280; })) == kAll);
  CHECK(Having(With([](ImageSettings& i) { i.sharpness = 1; })) == "B4 B5 A5 B6 B7 B8 B9");
  CHECK(Having(With([](ImageSettings& i) { i.colorMatrix.emplace(); })) == "B4 B5 B6 B7 B8 B9");
  CHECK(Having(With([](ImageSettings& i) { i.channel = 2; })) == kAll);
  CHECK(Having(With([](ImageSettings& i) { i.gammaTables.emplace(); })) == "B4 B5 A5 B6 B7 B8 B9");
  CHECK(Having(With([](ImageSettings& i) { i.gammaTables = ThreeTables(); })) ==
        "B4 B5 B6 B7 B8 B9");
  CHECK(Having(With([](ImageSettings& i) {
          i.gammaTables = ThreeTables();
          i.channel = 3;
        })) == "B4 B5 A5 B6 B7 B8 B9");
}

TEST_CASE("pmscan: what a level has not is refused with what to do") {
  const auto refusal = [](const Level& level, const ImageSettings& image, bool isExtended = false) {
    return pmscan::tests::RefusalOf(
        [&] { RequireImageSettings(image, ScannerOf(level, isExtended)); });
  };
  CHECK(refusal({"B5", 3, 9}, With([](ImageSettings& i) { i.threshold = 9; })) ==
        "65 Scanners of level B5 with standard commands have no threshold: leave --threshold out, "
        "or lighten and darken the picture with --brightness.");
  CHECK(refusal({"B3", 1, 4}, With([](ImageSettings& i) { i.halftone = 6; }), true) ==
        "65 Scanners of level B3 with extended commands have no halftone 6: --halftone can be "
        "none, fine, medium, coarse.");
  CHECK(refusal({"B3", 1, 4}, With([](ImageSettings& i) { i.gammaTables.emplace(); })) ==
        "65 Scanners of level B3 with standard commands have no gamma tables: choose a gamma with "
        "--gamma: 1.0, 2.2, 2.5, 2.8, 3.0.");
  CHECK(refusal({"B8", 8, 10}, With([](ImageSettings& i) { i.keepsPaper = true; })) ==
        "65 This scanner's feeder cannot keep a page: it is thrown out at the end of the scan; "
        "leave --keep-paper out.");
}

TEST_CASE("pmscan: a feeder of several variants keeps its paper") {
  ScannerSettings settings = ScannerOf({"B8", 8, 10});
  settings.mainStatusBit5 = 1;
  CHECK_NOTHROW(
      RequireImageSettings(With([](ImageSettings& i) { i.keepsPaper = true; }), settings));
}

TEST_CASE("pmscan: the image settings stand in the record as the module wants them") {
  ImageSettings image;
  image.threshold = 97;
  image.halftone = 6;
  image.brightness = -2;
  image.sharpness = 2;
  image.gamma = 280;
  image.colorMatrix = pmscan::ColorMatrix{1, 2, 3, 4, 5, 6, 7, 8, 0xFF};
  image.channel = 2;
  image.zoom = 150;
  image.isPreview = true;
  image.keepsPaper = true;
  ScannerSettings settings{};
  pmscan::DescribeImage(image, settings);
  CHECK(settings.thresholdT == 97);
  CHECK(settings.halftoneIndex == 6);
  CHECK(settings.brightness == -666);
  CHECK(settings.sharpness == 1000);
  CHECK(settings.gamma == 280);
  CHECK(settings.customGamma == 0);
  CHECK(settings.colorCorrection == 1);
  CHECK(settings.colorMatrix[8] == 0xFF);
  CHECK(settings.monoScan == 1);
  CHECK(settings.dropoutChannel == 2);
  CHECK(settings.zoom == 150);
  CHECK(settings.previewMode == 1);
  CHECK(settings.keepPaper == 1);
  CHECK(settings.halftoneOverride == 0);
}

TEST_CASE("pmscan: what is not asked for stands in the record as nothing") {
  ScannerSettings settings;
  std::memset(static_cast<void*>(&settings), 0xA5, sizeof settings);
  pmscan::DescribeImage({}, settings);
  CHECK(settings.thresholdT == 0xFFFF);
  CHECK(settings.halftoneIndex == 0);
  CHECK(settings.brightness == 0);
  CHECK(settings.sharpness == 0);
  CHECK(settings.gamma == 100);
  CHECK(settings.customGamma == 0);
  CHECK(settings.colorCorrection == 0);
  CHECK(settings.monoScan == 0);
  CHECK(settings.zoom == 100);
  CHECK(settings.previewMode == 0);
  CHECK(settings.keepPaper == 0);
}

TEST_CASE("pmscan: gamma tables go to their channels, of one channel its own goes first") {
  ImageSettings image;
  image.gammaTables = ThreeTables();
  ScannerSettings settings{};
  pmscan::DescribeImage(image, settings);
  CHECK(settings.customGamma == 1);
  CHECK(settings.customGammaCode == 4);
  CHECK(settings.gammaTableR[255] == 1);
  CHECK(settings.gammaTableG[255] == 2);
  CHECK(settings.gammaTableB[255] == 3);
  for (const std::uint16_t channel : std::array<std::uint16_t, 3>{1, 2, 3}) {
    image.channel = channel;
    pmscan::DescribeImage(image, settings);
    CHECK(settings.gammaTableR[0] == channel);
  }
}

TEST_CASE("pmscan: a zoom scans at so much of the resolution, which the picture keeps") {
  ScannerSettings settings = ScannerOf({"B8", 8, 10});
  settings.docFeedOption = 2;
  settings.bedWidth = settings.bedHeight = 800;
  settings.minResolutionCopy = 50;
  settings.maxResolutionCopy = 800;
  pmscan::Options options;
  options.mode = *pmscan::FindScanMode("grey");
  options.source = *pmscan::FindScanSource("flatbed");
  options.dotsPerInch = 200;
  options.image.zoom = 150;
  const pmscan::ScanPlan plan = PlanScan(options, settings);
  CHECK(plan.picture.dotsPerInch == 300);
  CHECK(plan.picture.resolution == 200);
  CHECK(plan.picture.area.width == 2400);
  DescribeScan(plan.asked, settings);
  CHECK(settings.resolution == 200);
  CHECK(settings.zoom == 150);
  CHECK(settings.areaHeightPx == 2400);
  options.dotsPerInch = 75;
  options.image.zoom = 150;
  CHECK(pmscan::tests::RefusalOf([&] { PlanScan(options, settings); }) ==
        "65 A zoom of 150 percent makes no whole number of dots per inch of 75: choose another "
        "--zoom or --resolution.");
  options.dotsPerInch = 600;
  CHECK(pmscan::tests::CodeOf([&] { PlanScan(options, settings); }) == pmscan::kUnsupported);
}

}  // namespace
