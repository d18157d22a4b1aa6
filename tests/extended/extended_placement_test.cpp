#include <cmath>
#include <limits>

#include "imaging/line_placement.h"
#include "tests/extended/extended_fixture.h"

namespace pmddb832::tests::extended {
namespace {

struct PlacementRow {
  std::uint32_t left, width, limit;
  bool mirror;
  LinePlacement expected;
};

void CheckPlacement(const PlacementRow& row,
                    LinePlacement (*place)(std::uint32_t, std::uint32_t, std::uint32_t, bool)) {
  CAPTURE(row.left);
  CAPTURE(row.width);
  CAPTURE(row.limit);
  CAPTURE(row.mirror);
  const LinePlacement placed = place(row.left, row.width, row.limit, row.mirror);
  CHECK(placed.left == row.expected.left);
  CHECK(placed.width == row.expected.width);
  CHECK(placed.padPixels == row.expected.padPixels);
}

TEST_CASE("a line of whole bytes is cut at the right edge, and moved left when mirrored") {
  for (const PlacementRow& row : {
           PlacementRow{0, 16, 1000, false, {0, 16, 0}},
           PlacementRow{984, 16, 1000, false, {984, 16, 0}},
           PlacementRow{985, 16, 1000, false, {985, 15, 1}},
           PlacementRow{990, 100, 1000, false, {990, 10, 90}},
           PlacementRow{0, 1001, 1000, false, {0, 1000, 1}},
           PlacementRow{1000, 16, 1000, false, {1000, 0, 16}},
           PlacementRow{984, 16, 1000, true, {984, 16, 0}},
           PlacementRow{985, 16, 1000, true, {984, 16, 0}},
           PlacementRow{900, 200, 1000, true, {800, 200, 0}},
       }) {
    CheckPlacement(row, PlaceByteAligned);
  }
}

TEST_CASE("edges of a line of whole bytes wrap at 32 bits, its pad at 16") {
  for (const PlacementRow& row : {
           PlacementRow{0xFFFFFFF0, 32, 1000, false, {0xFFFFFFF0, 32, 0}},
           PlacementRow{1001, 16, 1000, false, {1001, 0xFFFFFFFF, 17}},
           PlacementRow{0x80000000, 16, 1000, false, {0x80000000, 0x800003E8, 0xFC28}},
           PlacementRow{0, 70000, 100, false, {0, 100, 0x110C}},
           PlacementRow{0xFFFFFFF0, 32, 1000, true, {0xFFFFFFF0, 32, 0}},
           PlacementRow{0, 1200, 1000, true, {0xFFFFFF38, 1200, 0}},
       }) {
    CheckPlacement(row, PlaceByteAligned);
  }
}

TEST_CASE("a line in groups of 8 is rounded up, and down where the area ends") {
  for (const PlacementRow& row : {
           PlacementRow{0, 16, 1000, false, {0, 16, 0}},
           PlacementRow{0, 17, 1000, false, {0, 24, 0}},
           PlacementRow{0, 1001, 1000, false, {0, 1000, 1}},
           PlacementRow{3, 1000, 1000, false, {3, 992, 8}},
           PlacementRow{0, 993, 999, false, {0, 992, 1}},
           PlacementRow{990, 5, 1000, false, {990, 8, 0}},
           PlacementRow{992, 5, 1000, false, {992, 8, 0}},
           PlacementRow{993, 5, 1000, false, {993, 0, 5}},
       }) {
    CheckPlacement(row, PlaceInGroupsOf8);
  }
}

TEST_CASE("a mirrored line in groups of 8 keeps its right edge while the left one allows") {
  for (const PlacementRow& row : {
           PlacementRow{0, 16, 1000, true, {0, 16, 0}},
           PlacementRow{0, 17, 1000, true, {1, 16, 1}},
           PlacementRow{6, 17, 1000, true, {7, 16, 1}},
           PlacementRow{7, 17, 1000, true, {0, 24, 0}},
           PlacementRow{8, 17, 1000, true, {1, 24, 0}},
           PlacementRow{900, 200, 1000, true, {896, 104, 0}},
           PlacementRow{0, 64, 60, true, {4, 56, 4}},
           PlacementRow{0, 7, 1000, true, {7, 0, 7}},
           PlacementRow{1000, 16, 1000, true, {1000, 0, 0}},
       }) {
    CheckPlacement(row, PlaceInGroupsOf8);
  }
}

TEST_CASE("edges of a line in groups of 8 wrap at 32 bits") {
  for (const PlacementRow& row : {
           PlacementRow{0xFFFFFFF8, 16, 1000, false, {0xFFFFFFF8, 16, 0}},
           PlacementRow{1001, 16, 1000, false, {1001, 0xFFFFFFF8, 24}},
           PlacementRow{0, 0xFFFFFFFF, 1000, false, {0, 0, 0}},
           PlacementRow{0xFFFFFFF8, 16, 1000, true, {0xFFFFFFF8, 16, 0}},
           PlacementRow{1001, 16, 1000, true, {1000, 0, 0}},
           PlacementRow{1010, 16, 1000, true, {1008, 0xFFFFFFF8, 0}},
           // an edge beyond 31 bits counts as negative
           PlacementRow{0x80000010, 20, 0x90000000, true, {0x80000014, 16, 4}},
       }) {
    CheckPlacement(row, PlaceInGroupsOf8);
  }
}

// Area of a scan as offsets 8 to 23 of the parameters: left, top, width and height.
Bytes Area(std::uint32_t left, std::uint32_t top, std::uint32_t width, std::uint32_t height) {
  return Word(left) + Word(top) + Word(width) + Word(height);
}

// An open scanner, and one scan of which only the parameters count.
struct PlacedScanner : ExtendedScanner {
  void CheckParameters(const Bytes& block) {
    InitAcquire(settings.pixelType);
    AcceptParameters(block);
    AnswerStatus(Status(0x02));
    Acquire(0x10000);
    CHECK(PMGetScanError() == 43);
  }

  void CheckRefused() {
    InitAcquire(settings.pixelType);
    CheckAcquireFails(0x20000, 22);
  }
};

TEST_CASE("samples of 5 to 12 bits keep their width, all others are sent in groups of 8") {
  struct Row {
    std::uint32_t pixelType;
    const char* product;
    const char* modeAndBits;
    std::uint32_t width;
  };
  for (const Row& row :
       {Row{0, "X", "00 01", 24}, Row{2, "X", "00 08", 17}, Row{5, "X", "23 08", 17},
        Row{6, "X", "13 04", 24}, Row{7, "X", "13 0C", 17}, Row{8, "X", "00 0C", 17},
        Row{7, "Prospectra3140XL", "13 0E", 24}, Row{8, "Prospectra3140XL", "00 0E", 24}}) {
    CAPTURE(row.pixelType);
    CAPTURE(row.product);
    PlacedScanner scanner;
    REQUIRE(scanner.Open(With(Identity(), 46, Text(row.product))) == 1);
    scanner.settings.pixelType = row.pixelType;
    scanner.settings.areaWidthPx = 17;
    const Bytes block = With(ParameterBlock(), 24, FromHex(row.modeAndBits));
    scanner.CheckParameters(With(block, 8, Area(0, 0, row.width, 4)));
  }
}

TEST_CASE_FIXTURE(PlacedScanner, "the area is limited at the scan resolution") {
  REQUIRE(Open() == 1);
  settings.resolution = 50;
  settings.originX = 980;   // 490 of 500 pixels
  settings.originY = 1398;  // 699 of 700 lines
  const Bytes resolution = Word(50) + Word(50);
  CheckParameters(With(ParameterBlock(), 0, resolution + Area(490, 699, 10, 1)));
}

TEST_CASE("the selected area is the flatbed for source 0 and the option unit for any other") {
  struct Row {
    std::uint8_t scanSource;
    std::uint8_t optionByte;
    std::uint32_t width, height;
  };
  for (const Row& row : {Row{0, 0, 1000, 1400}, Row{1, 1, 800, 1300}, Row{2, 1, 800, 1300}}) {
    CAPTURE(row.scanSource);
    PlacedScanner scanner;
    scanner.OpenFeeder();
    scanner.settings.scanSource = row.scanSource;
    scanner.settings.areaWidthPx = scanner.settings.areaHeightPx = 2000;
    const Bytes block = With(ParameterBlock(), 8, Area(0, 0, row.width, row.height));
    const std::uint8_t lines = row.scanSource == 0 ? 64 : 80;
    scanner.CheckParameters(With(With(block, 26, {row.optionByte}), 28, {lines}));
  }
}

TEST_CASE("the origin is turned into pixels at the resolution and noted in the settings") {
  struct Row {
    double origin;
    std::uint32_t pixels;
  };
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const Row& row :
       {Row{0, 0}, Row{12.5, 38}, Row{1.0 / 6, 1}, Row{0.16, 0}, Row{-0.25, 0}, Row{-1, 0xFFFFFFFE},
        Row{kInfinity, 0}, Row{-kInfinity, 0}, Row{std::nan(""), 0}}) {
    CAPTURE(row.origin);
    PlacedScanner scanner;
    REQUIRE(scanner.Open() == 1);
    scanner.settings.resolution = 300;
    scanner.settings.originX = scanner.settings.originY = row.origin;
    scanner.settings.areaLeftPx = scanner.settings.areaTopPx = 77;
    const Bytes resolution = Word(300) + Word(300);
    scanner.CheckParameters(
        With(ParameterBlock(), 0, resolution + Area(row.pixels, row.pixels, 16, 4)));
    CHECK(scanner.settings.areaLeftPx == row.pixels);
    CHECK(scanner.settings.areaTopPx == row.pixels);
  }
}

TEST_CASE("lines beyond the area's end are not asked for, by 32-bit arithmetic") {
  struct Row {
    double origin;
    std::uint32_t height;
    std::uint32_t top;
    std::uint32_t lines;
  };
  for (const Row& row :
       {Row{1396, 4, 1396, 4}, Row{1397, 4, 1397, 3}, Row{1399, 4, 1399, 1}, Row{1400, 4, 1400, 0},
        Row{1401, 4, 1401, 0xFFFFFFFF}, Row{-4, 4, 0xFFFFFFFD, 4}, Row{0, 1401, 0, 1400}}) {
    CAPTURE(row.origin);
    PlacedScanner scanner;
    REQUIRE(scanner.Open() == 1);
    scanner.settings.originY = row.origin;
    scanner.settings.areaHeightPx = row.height;
    scanner.CheckParameters(With(ParameterBlock(), 8, Area(0, row.top, 16, row.lines)));
  }
}

TEST_CASE("a block holds an even number of lines that fits the data buffer, at most 254") {
  struct Row {
    std::uint32_t pixelType;
    const char* modeAndBits;
    std::uint32_t width;
    std::uint8_t lines;
  };
  for (const Row& row :
       {Row{2, "00 08", 8, 254}, Row{2, "00 08", 256, 254}, Row{2, "00 08", 257, 246},
        Row{2, "00 08", 264, 246}, Row{2, "00 08", 16312, 4}, Row{2, "00 08", 16320, 2},
        Row{2, "00 08", 21752, 2}, Row{2, "00 08", 32632, 2}, Row{0, "00 01", 8, 254},
        Row{0, "00 01", 32752, 14}, Row{5, "23 08", 10872, 2}, Row{6, "13 04", 8000, 4},
        Row{7, "13 0C", 5432, 2}, Row{8, "00 0C", 16312, 2}}) {
    CAPTURE(row.pixelType);
    CAPTURE(row.width);
    PlacedScanner scanner;
    REQUIRE(scanner.Open(With(Identity(), 20, Word(40000))) == 1);
    scanner.settings.pixelType = row.pixelType;
    scanner.settings.areaWidthPx = row.width;
    const Bytes block = With(ParameterBlock(), 24, FromHex(row.modeAndBits));
    scanner.CheckParameters(With(With(block, 16, Word(row.width)), 28, {row.lines}));
  }
}

TEST_CASE("a line of which a block cannot hold two is refused before the parameters are sent") {
  struct Row {
    std::uint32_t pixelType;
    std::uint32_t width;
  };
  for (const Row& row :
       {Row{2, 32633}, Row{2, 32640}, Row{2, 32752}, Row{5, 10873}, Row{7, 5433}, Row{8, 16313}}) {
    CAPTURE(row.pixelType);
    CAPTURE(row.width);
    PlacedScanner scanner;
    REQUIRE(scanner.Open(With(Identity(), 20, Word(40000))) == 1);
    scanner.settings.pixelType = row.pixelType;
    scanner.settings.areaWidthPx = row.width;
    scanner.CheckRefused();
  }
}

TEST_CASE("an area that leaves no pixel, or more than 32752, is refused") {
  for (const double left : {1000.0, 1001.0, 2000.0}) {
    for (const std::uint32_t mirror : {0u, 1u}) {
      for (const std::uint32_t pixelType : {0u, 2u}) {
        if (mirror != 0 && pixelType == 2) continue;  // moved into the area
        CAPTURE(left);
        CAPTURE(mirror);
        CAPTURE(pixelType);
        PlacedScanner scanner;
        REQUIRE(scanner.Open() == 1);
        scanner.settings.originX = left;
        scanner.settings.mirrorImage = mirror;
        scanner.settings.pixelType = pixelType;
        scanner.CheckRefused();
      }
    }
  }
}

TEST_CASE_FIXTURE(PlacedScanner, "a refused area is noted in the settings all the same") {
  REQUIRE(Open() == 1);
  settings.originX = 2000;
  settings.originY = 7;
  CheckRefused();
  CHECK(settings.areaLeftPx == 2000);
  CHECK(settings.areaTopPx == 7);
}

TEST_CASE_FIXTURE(PlacedScanner, "parameters of a refused scan stay in the block") {
  REQUIRE(Open() == 1);
  settings.originX = 2000;
  settings.thresholdT = 0x0042;
  CheckRefused();
  settings.originX = 0;
  settings.thresholdT = 0xFFFF;
  CheckParameters(With(ParameterBlock(), 33, {0x42}));
}

}  // namespace
}  // namespace pmddb832::tests::extended
