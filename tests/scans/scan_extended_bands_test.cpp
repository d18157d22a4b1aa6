#include <doctest/doctest.h>

#include "tests/scans/extended_scan.h"

using namespace pmddb832;
using namespace pmddb832::tests;
using simulator::ExtendedScanner;
using simulator::Picture;

namespace {

using Row = std::vector<std::uint8_t>;

// An extended scanner with a picture, and a host that scans it.
struct Desk {
  explicit Desk(Picture onBed)
      : picture(onBed), scanner(SmallExtendedScanner(onBed)), host(scanner) {}

  Row Expected(std::uint32_t x, std::uint32_t y, std::uint32_t width) const {
    return ExpectedRow(picture, host.settings.pixelType, true, x, y, width);
  }

  Picture picture;
  ExtendedScanner scanner;
  WholeScan host;
};

}  // namespace

TEST_CASE("buffers that are no multiple of a line deliver the same image") {
  for (std::uint32_t lines : {1u, 2u, 7u, 47u}) {
    Desk desk(ColourPicture(64, 48));
    REQUIRE(desk.host.Open());
    const ScannedImage image = desk.host.Acquire(5, lines * 192 + 100);
    CHECK(image.calls == (48 + lines - 1) / lines);
    REQUIRE(image.rows.size() == 48);
    for (std::uint32_t y = 0; y < 48; ++y) CHECK(image.rows[y] == desk.Expected(0, y, 64));
    CHECK(Violations(desk.scanner) == "");
  }
}

TEST_CASE("an image of several blocks arrives whole") {
  auto config = SmallExtendedScanner(NeutralPicture(2000, 150));
  config.identity.flatbed = {2000, 150};
  ExtendedScanner scanner(config);
  WholeScan host(scanner);
  host.settings.pixelType = 2;
  host.SetArea(0, 0, 2000, 150);  // 32 lines a block, the last one of 22
  REQUIRE(host.Open());
  const ScannedImage image = host.Acquire(2, 2000 * 40);
  CHECK(image.calls == 4);
  REQUIRE(image.rows.size() == 150);
  for (std::uint32_t y = 0; y < 150; ++y) {
    CHECK(image.rows[y] == ExpectedRow(config.onBed, 2, false, 0, y, 2000));
  }
  CHECK(Violations(scanner) == "");
}

TEST_CASE("pixels beyond the right edge of the bed repeat the last one") {
  Desk desk(ColourPicture(64, 48));
  desk.host.SetArea(50, 0, 20, 4);
  REQUIRE(desk.host.Open());
  const ScannedImage image = desk.host.Acquire(5);
  REQUIRE(image.rows.size() == 4);
  for (std::uint32_t y = 0; y < 4; ++y) {
    Row expected = desk.Expected(50, y, 14);
    const Row last = desk.Expected(63, y, 1);
    for (int i = 0; i < 6; ++i) expected.insert(expected.end(), last.begin(), last.end());
    CHECK(image.rows[y] == expected);
  }
  CHECK(Violations(desk.scanner) == "");
}

TEST_CASE("lines below the bed are white") {
  Desk desk(ColourPicture(64, 48));
  desk.host.SetArea(0, 40, 64, 20);
  REQUIRE(desk.host.Open());
  const ScannedImage image = desk.host.Acquire(5);
  REQUIRE(image.rows.size() == 20);
  for (std::uint32_t y = 0; y < 8; ++y) CHECK(image.rows[y] == desk.Expected(0, 40 + y, 64));
  for (std::uint32_t y = 8; y < 20; ++y) CHECK(image.rows[y] == Row(192, 0xFF));
  CHECK(Violations(desk.scanner) == "");
}

TEST_CASE("a mirrored scan delivers each line from right to left") {
  Desk desk(ColourPicture(64, 48));
  desk.host.settings.mirrorImage = 1;
  desk.host.SetArea(10, 2, 30, 6);
  REQUIRE(desk.host.Open());
  const ScannedImage image = desk.host.Acquire(5);
  REQUIRE(image.rows.size() == 6);
  for (std::uint32_t i = 0; i < 30; ++i) {
    const Row pixel = desk.Expected(39 - i, 3, 1);
    CHECK(Row(image.rows[1].begin() + 3 * i, image.rows[1].begin() + 3 * i + 3) == pixel);
  }
  CHECK(Violations(desk.scanner) == "");
}

TEST_CASE("a mirrored area beyond the right edge moves left onto the bed") {
  Desk desk(NeutralPicture(64, 48));
  desk.host.settings.pixelType = 2;
  desk.host.settings.mirrorImage = 1;
  desk.host.SetArea(50, 0, 20, 3);
  REQUIRE(desk.host.Open());
  const ScannedImage image = desk.host.Acquire(2);
  REQUIRE(image.rows.size() == 3);
  for (std::uint32_t i = 0; i < 20; ++i) {
    CHECK(image.rows[2][i] == Sample(desk.picture, 63 - i, 2, 0) >> 8);
  }
}

TEST_CASE("mirrored line art is anchored at its right edge") {
  Desk desk(BlackAndWhitePicture(64, 48));
  desk.host.settings.pixelType = 0;
  desk.host.settings.mirrorImage = 1;
  desk.host.SetArea(20, 0, 21, 3);
  REQUIRE(desk.host.Open());
  const ScannedImage image = desk.host.Acquire(0);
  REQUIRE(image.rows.size() == 3);
  for (std::uint32_t i = 0; i < 21; ++i) {
    const int bit = image.rows[1][i / 8] >> (7 - i % 8) & 1;
    CHECK(bit == (Sample(desk.picture, 40 - i, 1, 0) == 0xFFFF ? 1 : 0));
  }
}

TEST_CASE("a lower resolution delivers the mean of the bed's pixels") {
  Desk desk(NeutralPicture(64, 48));
  desk.host.settings.pixelType = 2;
  desk.host.settings.resolution = 300;
  desk.host.settings.areaWidthPx = 32;
  desk.host.settings.areaHeightPx = 24;
  REQUIRE(desk.host.Open());
  const ScannedImage image = desk.host.Acquire(2);
  REQUIRE(image.rows.size() == 24);
  const auto at = [&](std::uint32_t x, std::uint32_t y) -> std::uint32_t {
    return Sample(desk.picture, x, y, 0);
  };
  const std::uint32_t mean = (at(10, 6) + at(11, 6) + at(10, 7) + at(11, 7) + 2) / 4;
  CHECK(image.rows[3][5] == mean >> 8);
}
