#include "imaging/line_placement.h"
#include "tests/extended/extended_fixture.h"

namespace pmddb832::tests::extended {
namespace {

struct PlacementRow {
  std::uint32_t left, width, limit;
  bool mirror;
  LinePlacement expected;
};

void CheckPlacements(const std::vector<PlacementRow>& rows,
                     LinePlacement (*place)(std::uint32_t, std::uint32_t, std::uint32_t, bool)) {
  for (const PlacementRow& row : rows) {
    CAPTURE(row.left);
    CAPTURE(row.width);
    CAPTURE(row.limit);
    CAPTURE(row.mirror);
    const LinePlacement placed = place(row.left, row.width, row.limit, row.mirror);
    CHECK(placed.left == row.expected.left);
    CHECK(placed.width == row.expected.width);
    CHECK(placed.padPixels == row.expected.padPixels);
  }
}

TEST_CASE("a line of whole bytes is cut at the right edge, and moved left when mirrored") {
  CheckPlacements({{0, 16, 1000, false, {0, 16, 0}},
                   {984, 16, 1000, false, {984, 16, 0}},
                   {985, 16, 1000, false, {985, 15, 1}},
                   {990, 100, 1000, false, {990, 10, 90}},
                   {0, 1001, 1000, false, {0, 1000, 1}},
                   {1000, 16, 1000, false, {1000, 0, 16}},
                   {984, 16, 1000, true, {984, 16, 0}},
                   {985, 16, 1000, true, {984, 16, 0}},
                   {900, 200, 1000, true, {800, 200, 0}}},
                  PlaceByteAligned);
}

TEST_CASE("edges of a line of whole bytes wrap at 32 bits, its pad at 16") {
  CheckPlacements({{0xFFFFFFF0, 32, 1000, false, {0xFFFFFFF0, 32, 0}},
                   {1001, 16, 1000, false, {1001, 0xFFFFFFFF, 17}},
                   {0x80000000, 16, 1000, false, {0x80000000, 0x800003E8, 0xFC28}},
                   {0, 70000, 100, false, {0, 100, 0x110C}},
                   {0xFFFFFFF0, 32, 1000, true, {0xFFFFFFF0, 32, 0}},
                   {0, 1200, 1000, true, {0xFFFFFF38, 1200, 0}}},
                  PlaceByteAligned);
}

TEST_CASE("a line in groups of 8 is rounded up, and down where the area ends") {
  CheckPlacements({{0, 16, 1000, false, {0, 16, 0}},
                   {0, 17, 1000, false, {0, 24, 0}},
                   {0, 1001, 1000, false, {0, 1000, 1}},
                   {3, 1000, 1000, false, {3, 992, 8}},
                   {0, 993, 999, false, {0, 992, 1}},
                   {990, 5, 1000, false, {990, 8, 0}},
                   {992, 5, 1000, false, {992, 8, 0}},
                   {993, 5, 1000, false, {993, 0, 5}}},
                  PlaceInGroupsOf8);
}

TEST_CASE("a mirrored line in groups of 8 keeps its right edge while the left one allows") {
  CheckPlacements({{0, 16, 1000, true, {0, 16, 0}},
                   {0, 17, 1000, true, {1, 16, 1}},
                   {6, 17, 1000, true, {7, 16, 1}},
                   {7, 17, 1000, true, {0, 24, 0}},
                   {8, 17, 1000, true, {1, 24, 0}},
                   {900, 200, 1000, true, {896, 104, 0}},
                   {0, 64, 60, true, {4, 56, 4}},
                   {0, 7, 1000, true, {7, 0, 7}},
                   {1000, 16, 1000, true, {1000, 0, 0}}},
                  PlaceInGroupsOf8);
}

TEST_CASE("edges of a line in groups of 8 wrap at 32 bits") {
  CheckPlacements({{0xFFFFFFF8, 16, 1000, false, {0xFFFFFFF8, 16, 0}},
                   {1001, 16, 1000, false, {1001, 0xFFFFFFF8, 24}},
                   {0, 0xFFFFFFFF, 1000, false, {0, 0, 0}},
                   {0xFFFFFFF8, 16, 1000, true, {0xFFFFFFF8, 16, 0}},
                   {1001, 16, 1000, true, {1000, 0, 0}},
                   {1010, 16, 1000, true, {1008, 0xFFFFFFF8, 0}},
                   // an edge beyond 31 bits counts as negative
                   {0x80000010, 20, 0x90000000, true, {0x80000014, 16, 4}}},
                  PlaceInGroupsOf8);
}

// A bed on which lines are cut by nothing but the data buffer.
Bytes WideBed() {
  return With(Identity(), 20, Word(40000));
}

TEST_CASE("samples of 5 to 12 bits keep their width, all others are sent in groups of 8") {
  CheckParameters({{"areaWidthPx=17 pixelType=0", "16: 18, 24: 00 01"},
                   {"areaWidthPx=17 pixelType=2", "16: 11, 24: 00 08"},
                   {"areaWidthPx=17 pixelType=5", "16: 11, 24: 23 08"},
                   {"areaWidthPx=17 pixelType=6", "16: 18, 24: 13 04"},
                   {"areaWidthPx=17 pixelType=7", "16: 11, 24: 13 0C"},
                   {"areaWidthPx=17 pixelType=8", "16: 11, 24: 00 0C"}});
  CheckParameters({{"areaWidthPx=17 pixelType=7", "16: 18, 24: 13 0E"},
                   {"areaWidthPx=17 pixelType=8", "16: 18, 24: 00 0E"}},
                  With(Identity(), 46, Text("Prospectra3140XL")));
}

TEST_CASE("the area is limited at the scan resolution") {
  // 490 of 500 pixels, 699 of 700 lines
  CheckParameters({{"resolution=50 originX=980 originY=1398",
                    "0: 32 00 00 00 32 00 00 00, 8: EA 01 00 00 BB 02 00 00, 16: 0A, 20: 01"}});
}

TEST_CASE("the selected area is the flatbed for source 0 and the option unit for any other") {
  CheckParameters({{"areaWidthPx=2000 areaHeightPx=2000 scanSource=0",
                    "16: E8 03 00 00 78 05 00 00, 26: 00, 28: 40"},
                   {"areaWidthPx=2000 areaHeightPx=2000 scanSource=1",
                    "16: 20 03 00 00 14 05 00 00, 26: 01, 28: 50"},
                   {"areaWidthPx=2000 areaHeightPx=2000 scanSource=2",
                    "16: 20 03 00 00 14 05 00 00, 26: 01, 28: 50"}},
                  With(Identity(), 44, {0}), Status(0, 0x80));
}

TEST_CASE("the origin is turned into pixels at the resolution and noted in the settings") {
  for (const auto& row :
       {std::pair{"0", 0u}, std::pair{"12.5", 38u}, std::pair{"0.16666666666666666", 1u},
        std::pair{"0.16", 0u}, std::pair{"-0.25", 0u}, std::pair{"-1", 0xFFFFFFFE},
        std::pair{"inf", 0u}, std::pair{"-inf", 0u}, std::pair{"nan", 0u}}) {
    const auto& [origin, pixels] = row;
    CAPTURE(std::string(row.first));
    ParameterScanner scanner;
    scanner.Set(std::string("resolution=300 areaLeftPx=77 areaTopPx=77 originX=") + origin +
                " originY=" + origin);
    scanner.CheckParameters(
        With(ParameterBlock(), 0, Word(300) + Word(300) + Word(pixels) + Word(pixels)));
    CHECK(scanner.settings.areaLeftPx == pixels);
    CHECK(scanner.settings.areaTopPx == pixels);
  }
}

TEST_CASE("lines beyond the area's end are not asked for, by 32-bit arithmetic") {
  CheckParameters({{"originY=1396 areaHeightPx=4", "12: 74 05 00 00, 20: 04 00 00 00"},
                   {"originY=1397 areaHeightPx=4", "12: 75 05 00 00, 20: 03 00 00 00"},
                   {"originY=1399 areaHeightPx=4", "12: 77 05 00 00, 20: 01 00 00 00"},
                   {"originY=1400 areaHeightPx=4", "12: 78 05 00 00, 20: 00 00 00 00"},
                   {"originY=1401 areaHeightPx=4", "12: 79 05 00 00, 20: FF FF FF FF"},
                   {"originY=-4 areaHeightPx=4", "12: FD FF FF FF, 20: 04 00 00 00"},
                   {"originY=0 areaHeightPx=1401", "12: 00 00 00 00, 20: 78 05 00 00"}});
}

TEST_CASE("a block holds an even number of lines that fits the data buffer, at most 254") {
  CheckParameters({{"pixelType=2 areaWidthPx=8", "16: 08 00, 24: 00 08, 28: FE"},
                   {"pixelType=2 areaWidthPx=256", "16: 00 01, 24: 00 08, 28: FE"},
                   {"pixelType=2 areaWidthPx=257", "16: 01 01, 24: 00 08, 28: F6"},
                   {"pixelType=2 areaWidthPx=264", "16: 08 01, 24: 00 08, 28: F6"},
                   {"pixelType=2 areaWidthPx=16312", "16: B8 3F, 24: 00 08, 28: 04"},
                   {"pixelType=2 areaWidthPx=16320", "16: C0 3F, 24: 00 08, 28: 02"},
                   {"pixelType=2 areaWidthPx=21752", "16: F8 54, 24: 00 08, 28: 02"},
                   {"pixelType=2 areaWidthPx=32632", "16: 78 7F, 24: 00 08, 28: 02"},
                   {"pixelType=0 areaWidthPx=8", "16: 08 00, 24: 00 01, 28: FE"},
                   {"pixelType=0 areaWidthPx=32752", "16: F0 7F, 24: 00 01, 28: 0E"},
                   {"pixelType=5 areaWidthPx=10872", "16: 78 2A, 24: 23 08, 28: 02"},
                   {"pixelType=6 areaWidthPx=8000", "16: 40 1F, 24: 13 04, 28: 04"},
                   {"pixelType=7 areaWidthPx=5432", "16: 38 15, 24: 13 0C, 28: 02"},
                   {"pixelType=8 areaWidthPx=16312", "16: B8 3F, 24: 00 0C, 28: 02"}},
                  WideBed());
}

TEST_CASE("a line of which a block cannot hold two is refused before the parameters are sent") {
  for (const std::string_view line :
       {"pixelType=2 areaWidthPx=32633", "pixelType=2 areaWidthPx=32640",
        "pixelType=2 areaWidthPx=32752", "pixelType=5 areaWidthPx=10873",
        "pixelType=7 areaWidthPx=5433", "pixelType=8 areaWidthPx=16313"}) {
    CAPTURE(line);
    ParameterScanner scanner(WideBed());
    scanner.Set(std::string(line));
    scanner.CheckRefused();
  }
}

TEST_CASE("an area that leaves no pixel, or more than 32752, is refused") {
  for (const std::string_view origin : {"originX=1000 ", "originX=1001 ", "originX=2000 "}) {
    for (const std::string_view line :
         {"pixelType=0", "pixelType=2", "pixelType=0 mirrorImage=1"}) {
      CAPTURE(origin);
      CAPTURE(line);
      ParameterScanner scanner;
      scanner.Set(std::string(origin).append(line));
      scanner.CheckRefused();
    }
  }
}

TEST_CASE_FIXTURE(ParameterScanner, "a refused area is noted in the settings all the same") {
  Set("originX=2000 originY=7");
  CheckRefused();
  CheckSettings("areaLeftPx=2000 areaTopPx=7");
}

TEST_CASE_FIXTURE(ParameterScanner, "parameters of a refused scan stay in the block") {
  Set("originX=2000 thresholdT=0x0042");
  CheckRefused();
  Set("originX=0 thresholdT=0xFFFF");
  CheckParameters(With(ParameterBlock(), 33, {0x42}));
}

}  // namespace
}  // namespace pmddb832::tests::extended
