#include <doctest/doctest.h>

#include <utility>

#include "tests/scans/extended_scan.h"
#include "tests/scans/standard_scan.h"

// Every pixel type of both families, against what lies on the bed.

using namespace pmddb832;
using namespace pmddb832::tests;

namespace {

using Row = std::vector<std::uint8_t>;

constexpr BedArea kPart{8, 5, 40, 30};

template <class Desk>
void CheckType(std::uint32_t pixelType, std::uint32_t outputFormat, bool converts = false) {
  CAPTURE(pixelType);
  CAPTURE(outputFormat);
  Desk desk(Desk::Small(PictureFor(pixelType, 64, 48)), pixelType);
  desk.CheckShows(desk.Scan(kPart, outputFormat), desk.onBed, kPart, converts);
}

// A gamma table that makes white of black.
void InvertSamples(ScannerSettings& settings) {
  settings.customGamma = 1;
  settings.customGammaCode = 4;
  for (int i = 0; i < 256; ++i) {
    const auto inverted = static_cast<std::uint8_t>(255 - i);
    settings.gammaTableR[i] = settings.gammaTableG[i] = settings.gammaTableB[i] = inverted;
  }
}

template <class Desk>
void CheckInverted(Desk&& desk) {
  InvertSamples(desk.host.settings);
  CHECK(desk.ScanWhole({}).rows[20][30] == 255 - (Sample(desk.onBed, 30, 20, 0) >> 8));
  desk.host.settings.customGamma = 0;
  desk.CheckShows(desk.Scan({}), desk.onBed, {});
}

}  // namespace

TEST_CASE_TEMPLATE("line art arrives as the bed holds it", Desk, ExtendedDesk, StandardDesk) {
  CheckType<Desk>(0, 0);
  CheckType<Desk>(0, 1);
}

TEST_CASE_TEMPLATE("grey arrives as the bed holds it, bottom-up bands put in order", Desk,
                   ExtendedDesk, StandardDesk) {
  CheckType<Desk>(2, 2);
  CheckType<Desk>(2, 3);
}

TEST_CASE("the palette's index weighs red most for a host that converts, else blue") {
  CheckType<StandardDesk>(4, 4, true);
  CheckType<StandardDesk>(4, 3, true);
  CheckType<StandardDesk>(4, 1, false);
}

TEST_CASE_TEMPLATE("true colour comes blue first for a host that converts, else red first", Desk,
                   ExtendedDesk, StandardDesk) {
  CheckType<Desk>(5, 5, true);
  CheckType<Desk>(5, 1, false);
}

TEST_CASE_TEMPLATE("12-bit colour arrives as the bed holds it", Desk, ExtendedDesk, StandardDesk) {
  CheckType<Desk>(6, 6);
  CheckType<Desk>(6, 1);
}

TEST_CASE_TEMPLATE("deep colour comes blue first for a host that converts, else red first", Desk,
                   ExtendedDesk, StandardDesk) {
  CheckType<Desk>(7, 7, true);
  CheckType<Desk>(7, 1, false);
}

TEST_CASE_TEMPLATE("deep grey arrives as the bed holds it", Desk, ExtendedDesk, StandardDesk) {
  CheckType<Desk>(8, 8);
  CheckType<Desk>(8, 1);
}

TEST_CASE("rows of pixel types 1 and 3 are scanned, and left as the host gave them") {
  for (const std::uint32_t pixelType : {1u, 3u}) {
    StandardDesk desk(StandardDesk::Small(ColourPicture(64, 48)), pixelType);
    const ScannedImage image = desk.Scan(kPart, 1);
    CHECK(image.error == 0);
    REQUIRE(image.rows.size() == 30);
    for (const Row& row : image.rows) CHECK(row == Row(20, 0xA5));
    CHECK(desk.scanner.Request()->bits == (pixelType == 1 ? 4 : 1));
  }
}

TEST_CASE("the palette's colour mode has an alternative, with the same picture") {
  StandardDesk desk(StandardDesk::Small(ColourPicture(64, 48)), 4);
  desk.host.settings.altColorMode = 1;
  const ScannedImage image = desk.Scan(kPart, 1);
  desk.CheckShows(image, desk.onBed, kPart, false);
  CHECK(desk.scanner.Parameters('C') == Row{1});
}

TEST_CASE("an odd number of palette pixels ends in the middle of a byte") {
  constexpr BedArea kOdd{1, 0, 13, 4};
  StandardDesk desk(StandardDesk::Small(ColourPicture(64, 48)), 4);
  desk.CheckShows(desk.Scan(kOdd), desk.onBed, kOdd);
}

TEST_CASE_TEMPLATE("inverted line art arrives with every bit inverted", Desk, ExtendedDesk,
                   StandardDesk) {
  Desk desk(Desk::Small(BlackAndWhitePicture(64, 48)), 0);
  desk.host.settings.invertMono = 1;
  const ScannedImage image = desk.ScanWhole({}, 0);
  for (std::uint32_t y = 0; y < 48; ++y) {
    Row expected = ExpectedRow(desk.onBed, 0, false, 0, y, 64);
    for (std::uint8_t& byte : expected) byte = static_cast<std::uint8_t>(~byte);
    CHECK(First(image.rows[y], 8) == expected);
  }
}

TEST_CASE_TEMPLATE("a single-channel scan delivers that channel as grey", Desk, ExtendedDesk,
                   StandardDesk) {
  for (std::uint16_t channel = 1; channel <= 3; ++channel) {
    CAPTURE(channel);
    Desk desk(Desk::Small(ColourPicture(64, 48)), 2);
    desk.host.settings.monoScan = 1;
    desk.host.settings.dropoutChannel = channel;
    const ScannedImage image = desk.ScanWhole({}, 2);
    for (std::uint32_t x = 0; x < 64; ++x) {
      CHECK(image.rows[7][x] == Sample(desk.onBed, x, 7, channel - 1u) >> 8);
      CHECK(image.rows[47][x] == Sample(desk.onBed, x, 47, channel - 1u) >> 8);
    }
  }
}

TEST_CASE("previewed grey is darkened by every eleventh value") {
  StandardDesk desk(StandardDesk::Small(NeutralPicture(64, 48)), 2);
  desk.host.settings.previewMode = 1;
  const ScannedImage image = desk.ScanWhole({});
  for (std::uint32_t x = 0; x < 64; ++x) {
    const int grey = Sample(desk.onBed, x, 9, 0) >> 8;
    CHECK(image.rows[9][x] == (grey == 255 ? 234 : grey - grey / 11));
  }
}

TEST_CASE("previewed deep colour is reduced to the high bytes") {
  for (const std::uint32_t format : {1u, 7u}) {
    StandardDesk desk(StandardDesk::Small(ColourPicture(64, 48)), 7);
    desk.host.settings.previewMode = 1;
    const ScannedImage image = desk.ScanWhole(kPart, format);
    for (std::uint32_t y = 0; y < 30; ++y) {
      const Row expected = ExpectedRow(desk.onBed, 5, format != 1, 8, 5 + y, 40);
      CHECK(First(image.rows[y], 120) == expected);
    }
  }
}

TEST_CASE("previewed deep grey has 16-bit samples, as many as its row holds") {
  StandardDesk desk(StandardDesk::Small(NeutralPicture(64, 48)), 8);
  desk.host.settings.previewMode = 1;
  const ScannedImage image = desk.ScanWhole(kPart, 1);
  CHECK(image.rowBytes == 40);
  for (std::uint32_t y = 0; y < 30; ++y) {
    CHECK(image.rows[y] == ExpectedRow(desk.onBed, 8, false, 8, 5 + y, 20));
  }
}

TEST_CASE("the model RV3100 has deep samples of 14 bits") {
  auto config = ExtendedDesk::Small(NeutralPicture(64, 48));
  config.identity.productName = "SCANNER RV-3100 ";
  ExtendedDesk desk(std::move(config), 8);
  const ScannedImage image = desk.ScanWhole({}, 8);
  const std::uint16_t bed = Sample(desk.onBed, 10, 3, 0);
  CHECK(image.rows[3][20] == (bed & 0xFC));
  CHECK(image.rows[3][21] == bed >> 8);
}

TEST_CASE("a downloaded gamma table changes every sample") {
  CheckInverted(ExtendedDesk(ExtendedDesk::Small(NeutralPicture(64, 48)), 2));
  for (const std::string_view level : {"B4", "A5", "B8"}) {
    CAPTURE(level);
    CheckInverted(StandardDesk(StandardDesk::Small(NeutralPicture(64, 48), level), 2));
  }
}
