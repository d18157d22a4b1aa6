#include <doctest/doctest.h>

#include "tests/scans/extended_scan.h"
#include "tests/scans/standard_scan.h"

// Bands, blocks and edges of a scan.

using namespace pmddb832;
using namespace pmddb832::tests;

namespace {

using Row = std::vector<std::uint8_t>;

// The pixels of the area's line `y` from right to left.
template <class Desk>
Row MirroredRow(const Desk& desk, const BedArea& area, std::uint32_t y) {
  Row row;
  for (std::uint32_t i = area.width; i > 0; --i) {
    const Row pixel = ExpectedRow(desk.onBed, desk.host.settings.pixelType, true, area.left + i - 1,
                                  area.top + y, 1);
    row.insert(row.end(), pixel.begin(), pixel.end());
  }
  return row;
}

template <class Desk>
void CheckBands(const typename Desk::Config& config) {
  for (const std::uint32_t lines : {1u, 2u, 7u, 47u}) {
    for (const std::uint32_t format : {1u, 2u}) {
      CAPTURE(lines);
      CAPTURE(format);
      Desk desk(config);
      const ScannedImage image = desk.Scan({}, format, lines * 192 + 100);
      CHECK(image.calls == (48 + lines - 1) / lines);
      desk.CheckShows(image, desk.onBed, {}, format != 1);
    }
  }
}

template <class Desk>
void CheckMirrors(const typename Desk::Config& config) {
  constexpr BedArea kInside{10, 2, 30, 6};
  Desk desk(config);
  desk.host.settings.mirrorImage = 1;
  const ScannedImage image = desk.ScanWhole(kInside);
  for (std::uint32_t y = 0; y < 6; ++y) {
    CHECK(First(image.rows[y], 90) == MirroredRow(desk, kInside, y));
  }
}

// An area of 20 columns of which `inside` are on the bed, or in groups of pixels that are.
template <class Desk>
void CheckLastRepeats(std::uint32_t inside) {
  Desk desk(Desk::Small(ColourPicture(64, 48)));
  const ScannedImage image = desk.ScanWhole({50, 0, 20, 4});
  for (std::uint32_t y = 0; y < 4; ++y) {
    Row expected = ExpectedRow(desk.onBed, 5, true, 50, y, inside);
    const Row last = ExpectedRow(desk.onBed, 5, true, 50 + inside - 1, y, 1);
    while (expected.size() < 60) expected.insert(expected.end(), last.begin(), last.end());
    CHECK(image.rows[y] == expected);
  }
}

// What is on the bed of a mirrored grey area of 20 columns, of which 14 are on the bed.
template <class Desk>
void CheckMovesOntoBed(std::uint32_t columns) {
  Desk desk(Desk::Small(NeutralPicture(64, 48)), 2);
  desk.host.settings.mirrorImage = 1;
  const ScannedImage image = desk.ScanWhole({50, 0, 20, 3}, 2);
  for (std::uint32_t i = 0; i < columns; ++i) {
    CHECK(image.rows[2][i] == Sample(desk.onBed, 63 - i, 2, 0) >> 8);
  }
}

}  // namespace

TEST_CASE("buffers that are no multiple of a line deliver the same image") {
  CheckBands<ExtendedDesk>(ExtendedDesk::Small(ColourPicture(64, 48)));
  for (const std::string_view level : {"B3", "B8"}) {
    CAPTURE(level);
    CheckBands<StandardDesk>(StandardDesk::Small(ColourPicture(64, 48), level));
  }
}

TEST_CASE("a standard image of several blocks arrives whole in every pixel type") {
  for (const std::uint32_t pixelType : {0u, 2u, 4u, 5u, 6u, 7u, 8u}) {
    CAPTURE(pixelType);
    constexpr BedArea kAll{0, 0, 1200, 300};
    StandardDesk desk(ScannerFor<StandardDesk>(PictureFor(pixelType, 1200, 300)), pixelType);
    desk.CheckShows(desk.Scan(kAll), desk.onBed, kAll);
  }
}

TEST_CASE("an extended image of several blocks arrives whole") {
  constexpr BedArea kBed{0, 0, 2000, 150};  // 32 lines a block, the last one of 22
  ExtendedDesk desk(ScannerFor<ExtendedDesk>(NeutralPicture(2000, 150)), 2);
  const ScannedImage image = desk.Scan(kBed, 2, 2000 * 40);
  CHECK(image.calls == 4);
  desk.CheckShows(image, desk.onBed, kBed);
}

TEST_CASE("blocks that do not end with the bands deliver the same image") {
  constexpr BedArea kAll{0, 0, 640, 120};
  StandardDesk desk(ScannerFor<StandardDesk>(NeutralPicture(640, 120)), 2);
  for (const std::uint32_t bytes : {640u * 50, 640u * 7 + 3, 640u, 65280u, 70000u}) {
    CAPTURE(bytes);
    desk.CheckShows(desk.Scan(kAll, 2, bytes), desk.onBed, kAll);
  }
}

TEST_CASE("the palette in bands of a single line") {
  StandardDesk desk(StandardDesk::Small(ColourPicture(64, 48)), 4);
  desk.CheckShows(desk.Scan({}, 5, 64), desk.onBed, {});
}

TEST_CASE("previewed deep types in bands of a single line") {
  StandardDesk desk(StandardDesk::Small(ColourPicture(64, 48)), 7);
  desk.host.settings.previewMode = 1;
  const ScannedImage image = desk.Scan({}, 1, 192);
  REQUIRE(image.rows.size() == 48);
  CHECK(image.rows[47] == ExpectedRow(desk.onBed, 5, false, 0, 47, 64));
}

TEST_CASE("pixels beyond the right edge of the bed repeat the last one") {
  CheckLastRepeats<ExtendedDesk>(14);
  CheckLastRepeats<StandardDesk>(8);  // 8 of the 14 pixels are a group of 8
}

TEST_CASE("lines below the bed are white") {
  ExtendedDesk desk(ExtendedDesk::Small(ColourPicture(64, 48)));
  desk.CheckShows(desk.Scan({0, 40, 64, 20}), desk.onBed, {0, 40, 64, 20});
}

TEST_CASE("on a variant feeder pixels beyond the edge are white where the host asks for it") {
  auto config = StandardDesk::Small(ColourPicture(64, 48));
  config.optionUnit = simulator::OptionUnit::kFeeder;
  config.identity.feederFlags = 0x20;
  StandardDesk desk(config);
  desk.host.settings.whitePadding = 1;
  const ScannedImage image = desk.ScanWhole({50, 0, 20, 4});
  CHECK(Row(image.rows[3].begin() + 24, image.rows[3].end()) == Row(36, 0xFF));
}

TEST_CASE("palette pixels beyond the right edge repeat the last index") {
  StandardDesk desk(StandardDesk::Small(ColourPicture(64, 48)), 4);
  const ScannedImage image = desk.Scan({50, 0, 20, 4});
  Row expected = ExpectedRow(desk.onBed, 4, true, 50, 2, 8);
  expected.resize(20, expected.back());
  CHECK(image.rows.at(2) == expected);
}

TEST_CASE("a mirrored scan delivers each line from right to left, from level B5 on") {
  CheckMirrors<ExtendedDesk>(ExtendedDesk::Small(ColourPicture(64, 48)));
  for (const std::string_view level : {"B5", "A5", "B6", "B8"}) {
    CAPTURE(level);
    CheckMirrors<StandardDesk>(StandardDesk::Small(ColourPicture(64, 48), level));
  }
}

TEST_CASE("below level B5 a standard scanner does not mirror") {
  for (const std::string_view level : {"B3", "B4"}) {
    StandardDesk desk(StandardDesk::Small(ColourPicture(64, 48), level));
    desk.host.settings.mirrorImage = 1;
    desk.CheckShows(desk.Scan({8, 0, 24, 6}), desk.onBed, {8, 0, 24, 6});
  }
}

TEST_CASE("mirrored lines of the palette run from right to left too") {
  constexpr BedArea kInside{20, 0, 21, 3};
  StandardDesk palette(StandardDesk::Small(ColourPicture(64, 48)), 4);
  palette.host.settings.mirrorImage = 1;
  CHECK(First(palette.Scan(kInside).rows.at(1), 21) == MirroredRow(palette, kInside, 1));
}

TEST_CASE_TEMPLATE("mirrored line art is anchored at its right edge", Desk, ExtendedDesk,
                   StandardDesk) {
  Desk desk(Desk::Small(BlackAndWhitePicture(64, 48)), 0);
  desk.host.settings.mirrorImage = 1;
  const ScannedImage image = desk.ScanWhole({20, 0, 21, 3}, 0);
  for (std::uint32_t i = 0; i < 21; ++i) {
    const int bit = image.rows[1][i / 8] >> (7 - i % 8) & 1;
    CHECK(bit == (Sample(desk.onBed, 40 - i, 1, 0) == 0xFFFF ? 1 : 0));
  }
}

TEST_CASE("a mirrored area beyond the right edge moves left onto the bed") {
  CheckMovesOntoBed<ExtendedDesk>(20);
  CheckMovesOntoBed<StandardDesk>(16);
}

TEST_CASE_TEMPLATE("a lower resolution delivers the mean of the bed's pixels", Desk, ExtendedDesk,
                   StandardDesk) {
  Desk desk(Desk::Small(NeutralPicture(64, 48)), 2);
  desk.host.settings.resolution = 300;
  const ScannedImage image = desk.ScanWhole({0, 0, 32, 24}, 2);
  const auto at = [&](std::uint32_t x, std::uint32_t y) -> std::uint32_t {
    return Sample(desk.onBed, x, y, 0);
  };
  const std::uint32_t mean = (at(10, 6) + at(11, 6) + at(10, 7) + at(11, 7) + 2) / 4;
  CHECK(image.rows[3][5] == mean >> 8);
}

TEST_CASE("a whole page of a feeder at the first resolution is taken from its left edge") {
  auto config = StandardDesk::Small(ColourPicture(64, 48));
  config.optionUnit = simulator::OptionUnit::kFeeder;
  config.identity.resolutions = {600};
  config.feederPages.push_back(ColourPicture(64, 96));
  StandardDesk desk(config);
  desk.OpenFromOption();
  const ScannedImage image = desk.Scan({10, 0, 40, 96});
  desk.CheckShows(image, config.feederPages[0], {0, 0, 40, 96});
}

TEST_CASE("zoom multiplies the resolution") {
  StandardDesk desk(StandardDesk::Small(NeutralPicture(64, 48)), 2);
  desk.host.settings.resolution = 300;
  desk.host.settings.zoom = 200;
  desk.CheckShows(desk.Scan({}), desk.onBed, {});
  desk.host.settings.resolution = 600;
  desk.host.settings.zoom = 50;
  const ScannedImage image = desk.Scan({0, 0, 32, 24});
  CHECK(image.error == 0);
  CHECK(desk.scanner.Request()->dotsPerInch == 300);
}
