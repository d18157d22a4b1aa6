#include <doctest/doctest.h>

#include "tests/scans/extended_scan.h"

using namespace pmddb832;
using namespace pmddb832::tests;

namespace {

using Row = std::vector<std::uint8_t>;

constexpr BedArea kAll{};

}  // namespace

TEST_CASE("buffers that are no multiple of a line deliver the same image") {
  for (std::uint32_t lines : {1u, 2u, 7u, 47u}) {
    ExtendedDesk desk(SmallExtendedScanner(ColourPicture(64, 48)));
    const ScannedImage image = desk.Scan(kAll, 5, lines * 192 + 100);
    CHECK(image.calls == (48 + lines - 1) / lines);
    desk.CheckShows(image, desk.onBed, kAll);
  }
}

TEST_CASE("an image of several blocks arrives whole") {
  constexpr BedArea kBed{0, 0, 2000, 150};  // 32 lines a block, the last one of 22
  auto config = SmallExtendedScanner(NeutralPicture(2000, 150));
  config.identity.flatbed = {2000, 150};
  ExtendedDesk desk(config, 2);
  const ScannedImage image = desk.Scan(kBed, 2, 2000 * 40);
  CHECK(image.calls == 4);
  desk.CheckShows(image, desk.onBed, kBed);
}

TEST_CASE("pixels beyond the right edge of the bed repeat the last one") {
  ExtendedDesk desk(SmallExtendedScanner(ColourPicture(64, 48)));
  const ScannedImage image = desk.ScanWhole({50, 0, 20, 4});
  for (std::uint32_t y = 0; y < 4; ++y) {
    Row expected = ExpectedRow(desk.onBed, 5, true, 50, y, 14);
    const Row last = ExpectedRow(desk.onBed, 5, true, 63, y, 1);
    for (int i = 0; i < 6; ++i) expected.insert(expected.end(), last.begin(), last.end());
    CHECK(image.rows[y] == expected);
  }
}

TEST_CASE("lines below the bed are white") {
  ExtendedDesk desk(SmallExtendedScanner(ColourPicture(64, 48)));
  desk.CheckShows(desk.Scan({0, 40, 64, 20}), desk.onBed, {0, 40, 64, 20});
}

TEST_CASE("a mirrored scan delivers each line from right to left") {
  ExtendedDesk desk(SmallExtendedScanner(ColourPicture(64, 48)));
  desk.host.settings.mirrorImage = 1;
  const ScannedImage image = desk.ScanWhole({10, 2, 30, 6});
  for (std::uint32_t i = 0; i < 30; ++i) {
    const Row pixel = ExpectedRow(desk.onBed, 5, true, 39 - i, 3, 1);
    CHECK(Row(image.rows[1].begin() + 3 * i, image.rows[1].begin() + 3 * i + 3) == pixel);
  }
}

TEST_CASE("a mirrored area beyond the right edge moves left onto the bed") {
  ExtendedDesk desk(SmallExtendedScanner(NeutralPicture(64, 48)), 2);
  desk.host.settings.mirrorImage = 1;
  const ScannedImage image = desk.ScanWhole({50, 0, 20, 3}, 2);
  for (std::uint32_t i = 0; i < 20; ++i) {
    CHECK(image.rows[2][i] == Sample(desk.onBed, 63 - i, 2, 0) >> 8);
  }
}

TEST_CASE("mirrored line art is anchored at its right edge") {
  ExtendedDesk desk(SmallExtendedScanner(BlackAndWhitePicture(64, 48)), 0);
  desk.host.settings.mirrorImage = 1;
  const ScannedImage image = desk.ScanWhole({20, 0, 21, 3}, 0);
  for (std::uint32_t i = 0; i < 21; ++i) {
    const int bit = image.rows[1][i / 8] >> (7 - i % 8) & 1;
    CHECK(bit == (Sample(desk.onBed, 40 - i, 1, 0) == 0xFFFF ? 1 : 0));
  }
}

TEST_CASE("a lower resolution delivers the mean of the bed's pixels") {
  ExtendedDesk desk(SmallExtendedScanner(NeutralPicture(64, 48)), 2);
  desk.host.settings.resolution = 300;
  const ScannedImage image = desk.ScanWhole({0, 0, 32, 24}, 2);
  const auto at = [&](std::uint32_t x, std::uint32_t y) -> std::uint32_t {
    return Sample(desk.onBed, x, y, 0);
  };
  const std::uint32_t mean = (at(10, 6) + at(11, 6) + at(10, 7) + at(11, 7) + 2) / 4;
  CHECK(image.rows[3][5] == mean >> 8);
}
