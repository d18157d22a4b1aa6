#include <doctest/doctest.h>

#include "tests/scans/standard_scan.h"

// Every pixel type of a standard scanner, against what lies on its bed.

using namespace pmddb832;
using namespace pmddb832::tests;
using simulator::Picture;

namespace {

using Row = std::vector<std::uint8_t>;

constexpr BedArea kPart{8, 5, 40, 30};

void CheckType(std::uint32_t pixelType, std::uint32_t outputFormat, bool converts = false) {
  CAPTURE(pixelType);
  CAPTURE(outputFormat);
  StandardDesk desk(SmallStandardScanner(PictureFor(pixelType, 64, 48)), pixelType);
  const ScannedImage image = desk.Scan(kPart, outputFormat);
  desk.CheckShows(image, desk.onBed, kPart, converts);
}

}  // namespace

TEST_CASE("standard line art arrives as the bed holds it") {
  CheckType(0, 0);
  CheckType(0, 1);
}

TEST_CASE("standard grey arrives as the bed holds it, bottom-up bands put in order") {
  CheckType(2, 2);
  CheckType(2, 3);
}

TEST_CASE("the palette's index weighs red most for a host that converts, else blue") {
  CheckType(4, 4, true);
  CheckType(4, 3, true);
  CheckType(4, 1, false);
}

TEST_CASE("standard true colour comes blue first for a host that converts, else red first") {
  CheckType(5, 5, true);
  CheckType(5, 1, false);
}

TEST_CASE("standard 12-bit colour arrives as the bed holds it") {
  CheckType(6, 6);
  CheckType(6, 1);
}

TEST_CASE("standard deep colour comes blue first for a host that converts, else red first") {
  CheckType(7, 7, true);
  CheckType(7, 1, false);
}

TEST_CASE("standard deep grey arrives as the bed holds it") {
  CheckType(8, 8);
  CheckType(8, 1);
}

TEST_CASE("rows of pixel types 1 and 3 are scanned, and left as the host gave them") {
  for (const std::uint32_t pixelType : {1u, 3u}) {
    StandardDesk desk(SmallStandardScanner(ColourPicture(64, 48)), pixelType);
    const ScannedImage image = desk.Scan(kPart, 1);
    CHECK(image.error == 0);
    REQUIRE(image.rows.size() == 30);
    for (const Row& row : image.rows) CHECK(row == Row(20, 0xA5));
    CHECK(desk.scanner.Request()->bits == (pixelType == 1 ? 4 : 1));
  }
}

TEST_CASE("the palette's colour mode has an alternative, with the same picture") {
  StandardDesk desk(SmallStandardScanner(ColourPicture(64, 48)), 4);
  desk.host.settings.altColorMode = 1;
  const ScannedImage image = desk.Scan(kPart, 1);
  desk.CheckShows(image, desk.onBed, kPart, false);
  CHECK(desk.scanner.Parameters('C') == Row{1});
}

TEST_CASE("an odd number of palette pixels ends in the middle of a byte") {
  constexpr BedArea kOdd{1, 0, 13, 4};
  StandardDesk desk(SmallStandardScanner(ColourPicture(64, 48)), 4);
  desk.CheckShows(desk.Scan(kOdd), desk.onBed, kOdd);
}

TEST_CASE("standard inverted line art arrives with every bit inverted") {
  StandardDesk desk(SmallStandardScanner(BlackAndWhitePicture(64, 48)), 0);
  desk.host.settings.invertMono = 1;
  const ScannedImage image = desk.ScanWhole({});
  for (std::uint32_t y = 0; y < 48; ++y) {
    Row expected = ExpectedRow(desk.onBed, 0, false, 0, y, 64);
    for (std::uint8_t& byte : expected) byte = static_cast<std::uint8_t>(~byte);
    CHECK(First(image.rows[y], 8) == expected);
  }
}

TEST_CASE("a standard single-channel scan delivers that channel as grey") {
  for (std::uint16_t channel = 1; channel <= 3; ++channel) {
    StandardDesk desk(SmallStandardScanner(ColourPicture(64, 48)), 2);
    desk.host.settings.monoScan = 1;
    desk.host.settings.dropoutChannel = channel;
    const ScannedImage image = desk.ScanWhole({});
    for (std::uint32_t x = 0; x < 64; ++x) {
      CHECK(image.rows[7][x] == Sample(desk.onBed, x, 7, channel - 1u) >> 8);
    }
  }
}

TEST_CASE("previewed grey is darkened by every eleventh value") {
  StandardDesk desk(SmallStandardScanner(NeutralPicture(64, 48)), 2);
  desk.host.settings.previewMode = 1;
  const ScannedImage image = desk.ScanWhole({});
  for (std::uint32_t x = 0; x < 64; ++x) {
    const int grey = Sample(desk.onBed, x, 9, 0) >> 8;
    CHECK(image.rows[9][x] == (grey == 255 ? 234 : grey - grey / 11));
  }
}

TEST_CASE("previewed deep colour is reduced to the high bytes") {
  for (const std::uint32_t format : {1u, 7u}) {
    StandardDesk desk(SmallStandardScanner(ColourPicture(64, 48)), 7);
    desk.host.settings.previewMode = 1;
    const ScannedImage image = desk.ScanWhole(kPart, format);
    for (std::uint32_t y = 0; y < 30; ++y) {
      const Row expected = ExpectedRow(desk.onBed, 5, format != 1, 8, 5 + y, 40);
      CHECK(First(image.rows[y], 120) == expected);
    }
  }
}

TEST_CASE("previewed deep grey has 16-bit samples, as many as its row holds") {
  StandardDesk desk(SmallStandardScanner(NeutralPicture(64, 48)), 8);
  desk.host.settings.previewMode = 1;
  const ScannedImage image = desk.ScanWhole(kPart, 1);
  CHECK(image.rowBytes == 40);
  for (std::uint32_t y = 0; y < 30; ++y) {
    CHECK(image.rows[y] == ExpectedRow(desk.onBed, 8, false, 8, 5 + y, 20));
  }
}

TEST_CASE("a gamma table that is downloaded to a standard scanner changes every sample") {
  for (const char* level : {"B4", "A5", "B8"}) {
    StandardDesk desk(SmallStandardScanner(NeutralPicture(64, 48), level), 2);
    ScannerSettings& settings = desk.host.settings;
    settings.customGamma = 1;
    settings.customGammaCode = 4;
    for (int i = 0; i < 256; ++i) {
      const auto inverted = static_cast<std::uint8_t>(255 - i);
      settings.gammaTableR[i] = settings.gammaTableG[i] = settings.gammaTableB[i] = inverted;
    }
    const ScannedImage image = desk.ScanWhole({});
    CHECK(image.rows[20][30] == 255 - (Sample(desk.onBed, 30, 20, 0) >> 8));
    settings.customGamma = 0;
    desk.CheckShows(desk.Scan({}), desk.onBed, {});
  }
}
