#include <doctest/doctest.h>

#include "tests/scans/standard_scan.h"

// Bands, blocks and edges of a standard scan.

using namespace pmddb832;
using namespace pmddb832::tests;

namespace {

using Row = std::vector<std::uint8_t>;

// The pixels of the area's line `y` from right to left.
Row MirroredRow(const StandardDesk& desk, const BedArea& area, std::uint32_t y) {
  Row row;
  for (std::uint32_t i = area.width; i > 0; --i) {
    const Row pixel = ExpectedRow(desk.onBed, desk.host.settings.pixelType, true, area.left + i - 1,
                                  area.top + y, 1);
    row.insert(row.end(), pixel.begin(), pixel.end());
  }
  return row;
}

}  // namespace

TEST_CASE("buffers that are no multiple of a line deliver the same standard image") {
  for (const char* level : {"B3", "B8"}) {
    for (const std::uint32_t lines : {1u, 2u, 7u, 47u}) {
      for (const std::uint32_t format : {1u, 2u}) {
        CAPTURE(lines);
        StandardDesk desk(SmallStandardScanner(ColourPicture(64, 48), level));
        const ScannedImage image = desk.Scan({}, format, lines * 192 + 100);
        CHECK(image.calls == (48 + lines - 1) / lines);
        desk.CheckShows(image, desk.onBed, {}, format != 1);
      }
    }
  }
}

TEST_CASE("a standard image of several blocks arrives whole in every pixel type") {
  for (const std::uint32_t pixelType : {0u, 2u, 4u, 5u, 6u, 7u, 8u}) {
    CAPTURE(pixelType);
    constexpr BedArea kAll{0, 0, 1200, 300};
    StandardDesk desk(StandardScannerOf(PictureFor(pixelType, 1200, 300), 1200, 300), pixelType);
    desk.CheckShows(desk.Scan(kAll), desk.onBed, kAll);
  }
}

TEST_CASE("blocks that do not end with the bands deliver the same image") {
  constexpr BedArea kAll{0, 0, 640, 120};
  StandardDesk desk(StandardScannerOf(NeutralPicture(640, 120), 640, 120), 2);
  for (const std::uint32_t bytes : {640u * 50, 640u * 7 + 3, 640u, 65280u, 70000u}) {
    CAPTURE(bytes);
    desk.CheckShows(desk.Scan(kAll, 2, bytes), desk.onBed, kAll);
  }
}

TEST_CASE("the palette in bands of a single line") {
  StandardDesk desk(SmallStandardScanner(ColourPicture(64, 48)), 4);
  desk.CheckShows(desk.Scan({}, 5, 64), desk.onBed, {});
}

TEST_CASE("previewed deep types in bands of a single line") {
  StandardDesk desk(SmallStandardScanner(ColourPicture(64, 48)), 7);
  desk.host.settings.previewMode = 1;
  const ScannedImage image = desk.Scan({}, 1, 192);
  REQUIRE(image.rows.size() == 48);
  CHECK(image.rows[47] == ExpectedRow(desk.onBed, 5, false, 0, 47, 64));
}

TEST_CASE("pixels beyond the right edge of a standard bed repeat the last one") {
  StandardDesk desk(SmallStandardScanner(ColourPicture(64, 48)));
  const ScannedImage image = desk.ScanWhole({50, 0, 20, 4});  // 8 of the 14 pixels are a group of 8
  for (std::uint32_t y = 0; y < 4; ++y) {
    Row expected = ExpectedRow(desk.onBed, 5, true, 50, y, 8);
    const Row last = ExpectedRow(desk.onBed, 5, true, 57, y, 1);
    for (int i = 0; i < 12; ++i) expected.insert(expected.end(), last.begin(), last.end());
    CHECK(image.rows[y] == expected);
  }
}

TEST_CASE("on a variant feeder pixels beyond the edge are white where the host asks for it") {
  auto config = SmallStandardScanner(ColourPicture(64, 48));
  config.optionUnit = simulator::OptionUnit::kFeeder;
  config.identity.feederFlags = 0x20;
  StandardDesk desk(config);
  desk.host.settings.whitePadding = 1;
  const ScannedImage image = desk.ScanWhole({50, 0, 20, 4});
  CHECK(Row(image.rows[3].begin() + 24, image.rows[3].end()) == Row(36, 0xFF));
}

TEST_CASE("palette pixels beyond the right edge repeat the last index") {
  StandardDesk desk(SmallStandardScanner(ColourPicture(64, 48)), 4);
  const ScannedImage image = desk.Scan({50, 0, 20, 4});
  Row expected = ExpectedRow(desk.onBed, 4, true, 50, 2, 8);
  expected.resize(20, expected.back());
  CHECK(image.rows.at(2) == expected);
}

TEST_CASE("from level B5 on a mirrored scan delivers each line from right to left") {
  for (const char* level : {"B5", "A5", "B6", "B8"}) {
    CAPTURE(level);
    constexpr BedArea kInside{10, 2, 30, 6};
    StandardDesk desk(SmallStandardScanner(ColourPicture(64, 48), level));
    desk.host.settings.mirrorImage = 1;
    const ScannedImage image = desk.ScanWhole(kInside);
    for (std::uint32_t y = 0; y < 6; ++y) {
      CHECK(First(image.rows[y], 90) == MirroredRow(desk, kInside, y));
    }
  }
}

TEST_CASE("below level B5 a scanner does not mirror") {
  for (const char* level : {"B3", "B4"}) {
    StandardDesk desk(SmallStandardScanner(ColourPicture(64, 48), level));
    desk.host.settings.mirrorImage = 1;
    desk.CheckShows(desk.Scan({8, 0, 24, 6}), desk.onBed, {8, 0, 24, 6});
  }
}

TEST_CASE("mirrored line art and palette run from right to left too") {
  constexpr BedArea kInside{20, 0, 21, 3};
  StandardDesk palette(SmallStandardScanner(ColourPicture(64, 48)), 4);
  palette.host.settings.mirrorImage = 1;
  CHECK(First(palette.Scan(kInside).rows.at(1), 21) == MirroredRow(palette, kInside, 1));
}

TEST_CASE("mirrored standard line art is anchored at its right edge") {
  StandardDesk desk(SmallStandardScanner(BlackAndWhitePicture(64, 48)), 0);
  desk.host.settings.mirrorImage = 1;
  const ScannedImage image = desk.ScanWhole({20, 0, 21, 3});
  for (std::uint32_t i = 0; i < 21; ++i) {
    const int bit = image.rows[1][i / 8] >> (7 - i % 8) & 1;
    CHECK(bit == (Sample(desk.onBed, 40 - i, 1, 0) == 0xFFFF ? 1 : 0));
  }
}

TEST_CASE("a mirrored standard area beyond the right edge moves left onto the bed") {
  StandardDesk desk(SmallStandardScanner(NeutralPicture(64, 48)), 2);
  desk.host.settings.mirrorImage = 1;
  const ScannedImage image = desk.ScanWhole({50, 0, 20, 3});
  for (std::uint32_t i = 0; i < 16; ++i) {
    CHECK(image.rows[2][i] == Sample(desk.onBed, 63 - i, 2, 0) >> 8);
  }
}

TEST_CASE("a lower standard resolution delivers the mean of the bed's pixels") {
  StandardDesk desk(SmallStandardScanner(NeutralPicture(64, 48)), 2);
  desk.host.settings.resolution = 300;
  const ScannedImage image = desk.ScanWhole({0, 0, 32, 24});
  const auto at = [&](std::uint32_t x, std::uint32_t y) -> std::uint32_t {
    return Sample(desk.onBed, x, y, 0);
  };
  const std::uint32_t mean = (at(10, 6) + at(11, 6) + at(10, 7) + at(11, 7) + 2) / 4;
  CHECK(image.rows[3][5] == mean >> 8);
}

TEST_CASE("a whole page of a feeder at the first resolution is taken from its left edge") {
  auto config = SmallStandardScanner(ColourPicture(64, 48));
  config.optionUnit = simulator::OptionUnit::kFeeder;
  config.identity.resolutions = {600};
  config.feederPages.push_back(ColourPicture(64, 96));
  StandardDesk desk(config);
  desk.Open();
  desk.host.settings.scanSource = 1;
  const ScannedImage image = desk.Scan({10, 0, 40, 96});
  desk.CheckShows(image, config.feederPages[0], {0, 0, 40, 96});
}

TEST_CASE("zoom multiplies the resolution") {
  StandardDesk desk(SmallStandardScanner(NeutralPicture(64, 48)), 2);
  desk.host.settings.resolution = 300;
  desk.host.settings.zoom = 200;
  desk.CheckShows(desk.Scan({}), desk.onBed, {});
  desk.host.settings.resolution = 600;
  desk.host.settings.zoom = 50;
  const ScannedImage image = desk.Scan({0, 0, 32, 24});
  CHECK(image.error == 0);
  CHECK(desk.scanner.Request()->dotsPerInch == 300);
}
