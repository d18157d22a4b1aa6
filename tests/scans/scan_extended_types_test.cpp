#include <doctest/doctest.h>

#include "tests/scans/extended_scan.h"

using namespace pmddb832;
using namespace pmddb832::tests;

namespace {

constexpr BedArea kPart{8, 5, 40, 30};

void CheckType(std::uint32_t pixelType, std::uint32_t outputFormat, bool converts) {
  CAPTURE(pixelType);
  CAPTURE(outputFormat);
  ExtendedDesk desk(SmallExtendedScanner(PictureFor(pixelType, 64, 48)), pixelType);
  desk.CheckShows(desk.Scan(kPart, outputFormat), desk.onBed, kPart, converts);
}

}  // namespace

TEST_CASE("line art arrives as the bed holds it") {
  CheckType(0, 0, false);
}

TEST_CASE("grey arrives as the bed holds it, bottom-up bands put in order") {
  CheckType(2, 2, false);
}

TEST_CASE("true colour comes blue first for a host that converts") {
  CheckType(5, 5, true);
}

TEST_CASE("true colour comes red first for output format 1") {
  CheckType(5, 1, false);
}

TEST_CASE("12-bit colour arrives as the bed holds it") {
  CheckType(6, 6, false);
}

TEST_CASE("deep colour comes blue first for a host that converts") {
  CheckType(7, 7, true);
}

TEST_CASE("deep colour comes red first for output format 1") {
  CheckType(7, 1, false);
}

TEST_CASE("deep grey arrives as the bed holds it") {
  CheckType(8, 8, false);
}

TEST_CASE("inverted line art arrives with every bit inverted") {
  ExtendedDesk desk(SmallExtendedScanner(BlackAndWhitePicture(64, 48)), 0);
  desk.host.settings.invertMono = 1;
  const ScannedImage image = desk.ScanWhole({}, 0);
  for (std::uint32_t y = 0; y < 48; ++y) {
    auto expected = ExpectedRow(desk.onBed, 0, false, 0, y, 64);
    for (std::uint8_t& byte : expected) byte = static_cast<std::uint8_t>(~byte);
    CHECK(First(image.rows[y], 8) == expected);
  }
}

TEST_CASE("a single-channel scan delivers that channel as grey") {
  for (std::uint16_t channel = 1; channel <= 3; ++channel) {
    ExtendedDesk desk(SmallExtendedScanner(ColourPicture(64, 48)), 2);
    desk.host.settings.monoScan = 1;
    desk.host.settings.dropoutChannel = channel;
    const ScannedImage image = desk.ScanWhole({}, 2);
    CHECK(image.rows[7][9] == Sample(desk.onBed, 9, 7, channel - 1u) >> 8);
    CHECK(image.rows[47][63] == Sample(desk.onBed, 63, 47, channel - 1u) >> 8);
  }
}

TEST_CASE("the model RV3100 has deep samples of 14 bits") {
  auto config = SmallExtendedScanner(NeutralPicture(64, 48));
  config.identity.productName = "SCANNER RV-3100 ";
  ExtendedDesk desk(std::move(config), 8);
  const ScannedImage image = desk.ScanWhole({}, 8);
  const std::uint16_t bed = Sample(desk.onBed, 10, 3, 0);
  CHECK(image.rows[3][20] == (bed & 0xFC));
  CHECK(image.rows[3][21] == bed >> 8);
}

TEST_CASE("a downloaded gamma table changes every sample") {
  ExtendedDesk desk(SmallExtendedScanner(NeutralPicture(64, 48)), 2);
  ScannerSettings& settings = desk.host.settings;
  settings.customGamma = 1;
  for (int i = 0; i < 256; ++i) {
    const auto inverted = static_cast<std::uint8_t>(255 - i);
    settings.gammaTableR[i] = settings.gammaTableG[i] = settings.gammaTableB[i] = inverted;
  }
  const ScannedImage image = desk.ScanWhole({}, 2);
  CHECK(image.rows[20][30] == 255 - (Sample(desk.onBed, 30, 20, 0) >> 8));
}
