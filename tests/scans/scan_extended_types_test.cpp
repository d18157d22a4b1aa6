#include <doctest/doctest.h>

#include "tests/scans/extended_scan.h"

using namespace pmddb832;
using namespace pmddb832::tests;
using simulator::ExtendedScanner;
using simulator::Picture;

namespace {

// Scans 40 x 30 pixels from (8, 5) and holds every row against the picture.
void CheckType(std::uint32_t pixelType, std::uint32_t outputFormat, bool converts) {
  CAPTURE(pixelType);
  CAPTURE(outputFormat);
  const Picture picture = PictureFor(pixelType, 64, 48);
  ExtendedScanner scanner(SmallExtendedScanner(picture));
  WholeScan host(scanner);
  host.settings.pixelType = pixelType;
  host.SetArea(8, 5, 40, 30);
  REQUIRE(host.Open());
  const ScannedImage image = host.Acquire(outputFormat);
  REQUIRE(image.error == 0);
  REQUIRE(image.rows.size() == 30);
  for (std::uint32_t y = 0; y < 30; ++y) {
    CAPTURE(y);
    const auto expected = ExpectedRow(picture, pixelType, converts, 8, 5 + y, 40);
    CHECK(First(image.rows[y], expected.size()) == expected);
  }
  CHECK(Violations(scanner) == "");
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
  const Picture picture = BlackAndWhitePicture(64, 48);
  ExtendedScanner scanner(SmallExtendedScanner(picture));
  WholeScan host(scanner);
  host.settings.pixelType = 0;
  host.settings.invertMono = 1;
  REQUIRE(host.Open());
  const ScannedImage image = host.Acquire(0);
  REQUIRE(image.rows.size() == 48);
  for (std::uint32_t y = 0; y < 48; ++y) {
    auto expected = ExpectedRow(picture, 0, false, 0, y, 64);
    for (std::uint8_t& byte : expected) byte = static_cast<std::uint8_t>(~byte);
    CHECK(First(image.rows[y], 8) == expected);
  }
}

TEST_CASE("a single-channel scan delivers that channel as grey") {
  for (std::uint16_t channel = 1; channel <= 3; ++channel) {
    const Picture picture = ColourPicture(64, 48);
    ExtendedScanner scanner(SmallExtendedScanner(picture));
    WholeScan host(scanner);
    host.settings.pixelType = 2;
    host.settings.monoScan = 1;
    host.settings.dropoutChannel = channel;
    REQUIRE(host.Open());
    const ScannedImage image = host.Acquire(2);
    REQUIRE(image.rows.size() == 48);
    CHECK(image.rows[7][9] == Sample(picture, 9, 7, channel - 1u) >> 8);
    CHECK(image.rows[47][63] == Sample(picture, 63, 47, channel - 1u) >> 8);
    CHECK(Violations(scanner) == "");
  }
}

TEST_CASE("the model RV3100 has deep samples of 14 bits") {
  const Picture picture = NeutralPicture(64, 48);
  auto config = SmallExtendedScanner(picture);
  config.identity.productName = "SCANNER RV-3100 ";
  ExtendedScanner scanner(std::move(config));
  WholeScan host(scanner);
  host.settings.pixelType = 8;
  REQUIRE(host.Open());
  const ScannedImage image = host.Acquire(8);
  REQUIRE(image.rows.size() == 48);
  const std::uint16_t bed = Sample(picture, 10, 3, 0);
  CHECK(image.rows[3][20] == (bed & 0xFC));
  CHECK(image.rows[3][21] == bed >> 8);
}

TEST_CASE("a downloaded gamma table changes every sample") {
  const Picture picture = NeutralPicture(64, 48);
  ExtendedScanner scanner(SmallExtendedScanner(picture));
  WholeScan host(scanner);
  host.settings.pixelType = 2;
  host.settings.customGamma = 1;
  for (int i = 0; i < 256; ++i) {
    const auto inverted = static_cast<std::uint8_t>(255 - i);
    host.settings.gammaTableR[i] = inverted;
    host.settings.gammaTableG[i] = inverted;
    host.settings.gammaTableB[i] = inverted;
  }
  REQUIRE(host.Open());
  const ScannedImage image = host.Acquire(2);
  REQUIRE(image.rows.size() == 48);
  CHECK(image.rows[20][30] == 255 - (Sample(picture, 30, 20, 0) >> 8));
  CHECK(Violations(scanner) == "");
}
