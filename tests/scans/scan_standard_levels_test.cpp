#include <doctest/doctest.h>

#include "tests/scans/standard_scan.h"

// Every command level of a standard scanner, and the models that list half of what they can.

using namespace pmddb832;
using namespace pmddb832::tests;
using simulator::StandardScannerConfig;

namespace {

constexpr BedArea kPart{8, 5, 40, 30};
constexpr std::uint32_t kTypes[]{0, 2, 4, 5, 6, 7, 8};

void CheckLevel(std::string_view level) {
  CAPTURE(level);
  for (const std::uint32_t pixelType : kTypes) {
    CAPTURE(pixelType);
    StandardDesk desk(StandardDesk::Small(PictureFor(pixelType, 64, 48), level), pixelType);
    desk.CheckShows(desk.Scan(kPart), desk.onBed, kPart);
    desk.CheckShows(desk.Scan({}), desk.onBed, {});
    CHECK(desk.host.settings.commandLevelText == level);
  }
}

void CheckRefused(std::string_view level) {
  CAPTURE(level);
  StandardDesk desk(StandardDesk::Small({}, level));
  CHECK_FALSE(desk.host.Open());
  CHECK(desk.host.module->GetScanError() == 1);
  CHECK(desk.host.settings.commandLevelText == level);
}

// 32 x 24 pixels at 300 dpi, as the scanner tells it; the picture has 600 dpi.
StandardScannerConfig ListingHalf(const std::string& productName) {
  StandardScannerConfig config = StandardDesk::Small(ColourPicture(64, 48), "B8");
  config.identity.productName = productName;
  config.identity.resolutions = {50, 100, 150, 300};
  config.identity.flatbed = {32, 24};
  config.identity.feeder = {32, 48};
  config.identity.listsHalf = true;
  return config;
}

}  // namespace

TEST_CASE("each level delivers every pixel type, level B3 line by line") {
  for (const std::string level : {"B3", "B4", "B5", "A5", "B6", "B7", "B8", "B9"})
    CheckLevel(level);
}

TEST_CASE("levels B1, B2 and A4 are not opened") {
  CheckRefused("B1");
  CheckRefused("B2");
  CheckRefused("A4");
}

TEST_CASE("all settings reach a scanner of each level that knows them") {
  for (const std::string level : {"B3", "B4", "B5", "A5", "B6", "B7", "B8", "B9"}) {
    CAPTURE(level);
    StandardDesk desk(StandardDesk::Small(NeutralPicture(64, 48), level), 2);
    ScannerSettings& settings = desk.host.settings;
    settings.halftoneIndex = 3;
    settings.optionS = 1;
    settings.thresholdT = 0x80;
    settings.brightness = -700;
    settings.sharpness = 1000;
    settings.colorCorrection = 1;
    settings.paramG = 1;
    CHECK(desk.ScanWhole({}).error == 0);
    CHECK(desk.scanner.Refusals() == std::vector<std::string>{});
    CHECK(desk.scanner.Parameters('L') == std::vector<std::uint8_t>{0xFE});
  }
}

TEST_CASE("focus is moved and found at level B8") {
  StandardDesk desk(StandardDesk::Small(ColourPicture(64, 48), "B8"));
  desk.Scan({});
  CHECK(desk.host.module->SetFocus(0, 5) == 5);
  CHECK(desk.scanner.FocusPosition() == 0x45);
}

TEST_CASE("a model that lists half of its resolution is scanned at all of it") {
  for (const std::string name :
       {"SCANNER QM-2700 ", "Prospectra900   ", "SCANNER RV-5000 ", "Prospectra3100  "}) {
    CAPTURE(name);
    StandardDesk desk(ListingHalf(name));
    desk.CheckShows(desk.Scan({}), desk.onBed, {});
    CHECK(desk.host.settings.maxResolutionCopy == 300);
    CHECK(desk.host.settings.baseResolution == 600);
    CHECK(desk.host.settings.bedWidth == 10);
  }
}

TEST_CASE("such a model is cut at the edge of its whole bed") {
  constexpr BedArea kAtTheEdge{40, 0, 24, 5};
  StandardDesk desk(ListingHalf("SCANNER RV-5000 "));
  desk.CheckShows(desk.Scan(kAtTheEdge), desk.onBed, kAtTheEdge);
  const ScannedImage beyond = desk.Scan({50, 0, 20, 1});
  const auto last = ExpectedRow(desk.onBed, 5, true, 57, 0, 1);
  CHECK(std::vector<std::uint8_t>(beyond.rows[0].end() - 3, beyond.rows[0].end()) == last);
}

TEST_CASE("such a model scans pages of its feeder at all of its resolution") {
  StandardScannerConfig config = ListingHalf("SCANNER QM-2700 ");
  config.optionUnit = simulator::OptionUnit::kFeeder;
  config.feederPages.push_back(ColourPicture(64, 96));
  StandardDesk desk(config);
  desk.OpenFromOption();
  constexpr BedArea kPage{0, 0, 64, 96};
  desk.CheckShows(desk.Scan(kPage), config.feederPages[0], kPage);
}

TEST_CASE("a model that the host names is taken as it tells itself") {
  StandardDesk desk(ListingHalf("SCANNER QM-2700 "));
  const std::string_view id = "QM2700";
  std::copy(id.begin(), id.end(), desk.host.settings.modelId);
  REQUIRE(desk.host.Open());
  CHECK(desk.host.settings.baseResolution == 300);
  CHECK(desk.host.settings.bedWidth == 10);
}

TEST_CASE("a model of the plain table is not doubled") {
  for (const std::string name : {"SCANNER RV-3000 ", "SCANNER QM-43000", "Prospectra936XL "}) {
    StandardScannerConfig config = StandardDesk::Small(ColourPicture(64, 48));
    config.identity.productName = name;
    StandardDesk desk(config);
    desk.CheckShows(desk.Scan({}), desk.onBed, {});
    CHECK(desk.host.settings.baseResolution == 600);
  }
}
