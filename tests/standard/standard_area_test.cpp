#include "standard/scan_area.h"
#include "tests/standard/standard_fixture.h"

// The area of ESC "A": placement, limits, centring.

namespace pmddb832::tests::standard {
namespace {

std::string Area(std::uint32_t left, std::uint32_t top, std::uint32_t width, std::uint32_t height) {
  return "A " + Hex(Short(left) + Short(top) + Short(width) + Short(height));
}

struct Request {
  std::string_view level;
  std::uint32_t left;
  std::uint32_t width;
  bool mirror = false;
  std::uint8_t paramG = 0;
};

void Apply(const Request& request, ScannerSettings& settings) {
  settings.areaLeftPx = request.left;
  settings.areaWidthPx = request.width;
  settings.mirrorImage = request.mirror ? 1 : 0;
  settings.paramG = request.paramG;
}

std::string UploadWith(const Request& request, const std::string& area) {
  std::string changes = area;
  if (request.mirror && request.level[1] > '4') changes += ", K 01";
  if (request.level != "B3") changes += ", g " + Hex({request.paramG});
  return UploadOf(request.level, changes);
}

// The area that is sent for a request, on a flatbed of 1000 pixels.
void CheckArea(const Request& request, std::uint32_t left, std::uint32_t width) {
  CAPTURE(request.width);
  StandardScanner scanner(request.level);
  Apply(request, scanner.settings);
  scanner.Upload(UploadWith(request, Area(left, 0, width, 4)));
}

// The same on a bed of 65535 pixels, with the code that the upload leaves.
std::uint32_t CodeOf(const Request& request, const std::string& area) {
  StandardScanner scanner;
  scanner.level = request.level;
  const Bytes identity = With(Identity(request.level), 9, {0xFF, 0xFF});
  REQUIRE(scanner.Open(identity) == 1);
  Apply(request, scanner.settings);
  return scanner.FailingUpload(UploadWith(request, area));
}

TEST_CASE("standard: the width is rounded up to a multiple of 8") {
  CheckArea({"B4", 0, 201}, 0, 208);
  CheckArea({"B4", 3, 208}, 3, 208);
  CheckArea({"B8", 3, 1}, 3, 8);
}

TEST_CASE("standard: a line beyond the area is cut to a multiple of 8") {
  CheckArea({"B4", 700, 301}, 700, 296);
  CheckArea({"B8", 5, 1000}, 5, 992);
  CheckArea({"B4", 0, 1001}, 0, 1000);
}

TEST_CASE("standard: a line whose rounding alone is beyond the area is cut too") {
  CheckArea({"B4", 795, 201}, 795, 200);
}

TEST_CASE("standard: a line that is left without pixels is refused with code 1, without ESC A") {
  CHECK(CodeOf({"B4", 65530, 100}, "-A") == 1);  // less than 8 pixels up to the edge
  CHECK(CodeOf({"B5", 0, 5, true}, "-A") == 1);
  CHECK(CodeOf({"B8", 65530, 100}, "-A") == 1);
}

TEST_CASE("standard: mirrored at level B5 and above, the line keeps its right edge") {
  for (const std::string_view level : {"B5", "A5", "B6", "B8"}) {
    CheckArea({level, 100, 201, true}, 93, 208);   // right edge 301
    CheckArea({level, 700, 301, true}, 696, 304);  // cut at 1000: 300 pixels
  }
}

TEST_CASE("standard: a mirrored line too close to the left edge is rounded down") {
  CheckArea({"B5", 2, 201, true}, 3, 200);  // right edge 203
}

TEST_CASE("standard: mirrored below level B5, the line keeps its left edge") {
  CheckArea({"B3", 100, 201, true}, 100, 208);
  CheckArea({"B4", 100, 201, true}, 100, 208);
}

TEST_CASE("standard: pads are the pixels that rounding adds to a mirrored line below level 3") {
  CHECK(PlaceLine(0, 201, 1000, TraitsOf(1), true, 0).padPixels == 7);
  CHECK(PlaceLine(0, 201, 1000, TraitsOf(2), true, 2).padPixels == 7);
  CHECK(PlaceLine(0, 201, 1000, TraitsOf(2), true, 1).padPixels == 0);
  CHECK(PlaceLine(0, 201, 1000, TraitsOf(2), false, 0).padPixels == 0);
  CHECK(PlaceLine(0, 201, 1000, TraitsOf(5), true, 0).padPixels == 7);  // no scanner has it
  CHECK(PlaceLine(100, 201, 1000, TraitsOf(3), true, 0).padPixels == 0);
  const std::uint16_t pads[] = {7, 7, 7, 0, 0, 7, 0, 0, 0, 7};
  for (std::uint32_t code = 0; code < std::size(pads); ++code) {
    CAPTURE(code);
    CHECK(PlaceLine(100, 201, 1000, TraitsOf(code), true, 0).padPixels == pads[code]);
  }
}

TEST_CASE("standard: pads are the pixels that a cut line lacks") {
  CHECK(PlaceLine(700, 301, 1000, TraitsOf(2), false, 0).padPixels == 5);
  CHECK(PlaceLine(700, 301, 1000, TraitsOf(2), true, 0).padPixels == 5);
  CHECK(PlaceLine(2, 201, 1000, TraitsOf(3), true, 0).padPixels == 1);
  CHECK(PlaceLine(1000, 70000, 1000, TraitsOf(2), false, 0).padPixels == 70000 - 65536);
}

TEST_CASE("standard: edges beyond the area wrap at 32 bits") {
  CHECK(PlaceLine(1004, 16, 1000, TraitsOf(8), false, 0).width == 0xFFFFFFF8);
  CHECK(PlaceLine(0xFFFFFFFF, 16, 1000, TraitsOf(8), false, 0).left == 0xFFFFFFFF);
  CHECK(PlaceLine(0xFFFFFFFF, 17, 1000, TraitsOf(8), true, 0).width == 16);  // right edge 16
}

TEST_CASE_FIXTURE(
    OpenB4,
    "standard: the width of the area follows resolution and zoom up to a product of 80000") {
  Set("resolution=400 zoom=200 areaWidthPx=9000");
  Upload(UploadOf("B4", "R 90 01 90 01, H C8 C8, " + Area(0, 0, 8000, 4)));
}

TEST_CASE_FIXTURE(
    OpenB4, "standard: beyond that product it is a multiple of 8 at the effective resolution") {
  Set("resolution=401 zoom=200 areaWidthPx=9000");  // 802 dpi: 8020 pixels
  Upload(UploadOf("B4", "R 91 01 91 01, H C8 C8, " + Area(0, 0, 8016, 4)));
}

TEST_CASE("standard: the limit of the product depends on the model's quirk") {
  CHECK(ProductLimit(0) == 80000);
  CHECK(ProductLimit(1) == 80000);
  CHECK(ProductLimit(2) == 60000);
  CHECK(ProductLimit(3) == 160000);
  CHECK(ProductLimit(4) == 160000);
}

TEST_CASE("standard: the area of the selected source limits the line") {
  for (const auto& [source, width] :
       {std::pair{0, 1000u}, std::pair{1, 800u}, std::pair{2, 800u}, std::pair{3, 1000u}}) {
    StandardScanner scanner("B4", Status(0, 0x80));
    scanner.settings.scanSource = static_cast<std::uint8_t>(source);
    scanner.Set("areaWidthPx=1200 docFeedOption=2");
    const std::string select = "e " + Hex({scanner.settings.scanSource}) + ", ";
    scanner.Upload(select + UploadOf("B4", Area(0, 0, width, 4)));
  }
}

TEST_CASE_FIXTURE(StandardScanner,
                  "standard: a doubled resolution is what the limit is computed from") {
  REQUIRE(Open(Identity(), Status(), Product("SCANNER QM-2700 ")) == 1);
  settings.areaWidthPx = 1200;  // 2000 pixels at 200 dpi are 1000 at 100
  Upload(UploadOf("B4", Area(0, 0, 1000, 4)));
}

TEST_CASE("standard: level B3 sends at most 4096 pixels and reports code 16") {
  CHECK(CodeOf({"B3", 0, 5000}, Area(0, 0, 4096, 4)) == 16);
  StandardScanner scanner("B3");
  CHECK(ClipWidth(TraitsOf(1), 8, 4096).width == 4096);
  CHECK_FALSE(ClipWidth(TraitsOf(1), 8, 4096).tooLarge);
}

TEST_CASE_FIXTURE(StandardScanner, "standard: level B4 sends 5000 pixels as they are") {
  REQUIRE(Open(With(Identity(), 9, {0xFF, 0xFF})) == 1);
  settings.areaWidthPx = 5000;
  Upload(UploadOf("B4", Area(0, 0, 5000, 4)));
}

TEST_CASE("standard: below level B8 at most 16128 pixels are sent, with code 16 for more") {
  for (const std::string_view level : {"B4", "B5", "A5", "B6", "B7"}) {
    CAPTURE(level);
    CHECK(CodeOf({level, 0, 16129}, Area(0, 0, 16128, 4)) == 16);
  }
  CHECK_FALSE(ClipWidth(TraitsOf(7), 8, 16128).tooLarge);
  const std::uint32_t widest[] = {16128, 4096,  16128, 16128, 16128,
                                  16128, 16128, 16128, 40000, 16128};
  for (std::uint32_t code = 0; code < std::size(widest); ++code) {
    CAPTURE(code);
    CHECK(ClipWidth(TraitsOf(code), 1, 40000).width == widest[code]);
    CHECK(ClipWidth(TraitsOf(code), 1, 40000).tooLarge == (code != 8));
  }
}

TEST_CASE("standard: more than 256000 bits in a line report code 16 and change nothing") {
  CHECK(ClipWidth(TraitsOf(2), 16, 16000).tooLarge == false);
  CHECK(ClipWidth(TraitsOf(2), 16, 16008).tooLarge == true);
  CHECK(ClipWidth(TraitsOf(2), 16, 16008).width == 16008);
  CHECK(ClipWidth(TraitsOf(8), 16, 32752).tooLarge == false);
}

TEST_CASE_FIXTURE(StandardScanner, "standard: the area is sent before code 16 ends the scan") {
  REQUIRE(Open(With(Identity(), 9, {0xFF, 0xFF})) == 1);
  Set("pixelType=8 areaWidthPx=16008");
  CHECK(FailingUpload(UploadOf("B4", "D 0C, " + Area(0, 0, 16008, 4))) == 16);
}

TEST_CASE("standard: level B8 refuses an origin beyond 65535 with code 34, without ESC A") {
  CHECK(CodeOf({"B8", 65536, 16}, "-A") == 34);
  StandardScanner scanner("B8");
  scanner.settings.areaTopPx = 65536;
  CHECK(scanner.FailingUpload(UploadOf("B8", "-A")) == 34);
}

TEST_CASE("standard: level B8 refuses more than 32752 pixels or 65535 lines with code 35") {
  CHECK(CodeOf({"B8", 0, 32753}, "-A") == 35);
  StandardScanner scanner("B8");
  scanner.settings.areaHeightPx = 65536;
  CHECK(scanner.FailingUpload(UploadOf("B8", "-A")) == 35);
}

TEST_CASE("standard: the greatest area of level B8 is sent") {
  CHECK(AreaError(TraitsOf(8), 65535, 65535, 32752, 65535) == 0);
  CHECK(AreaError(TraitsOf(7), 65536, 65536, 32753, 65536) == 0);
}

TEST_CASE("standard: no level but B8 refuses an area for its size, and all refuse an empty line") {
  for (std::uint32_t code = 0; code < 10; ++code) {
    CAPTURE(code);
    CHECK(AreaError(TraitsOf(code), 65536, 65536, 32753, 65536) == (code == 8 ? 34 : 0));
    CHECK(AreaError(TraitsOf(code), 65535, 65535, 32753, 65536) == (code == 8 ? 35 : 0));
    CHECK(AreaError(TraitsOf(code), 0, 0, 0, 4) == 1);
  }
}

TEST_CASE_FIXTURE(OpenB4, "standard: below level B8 edges are sent with their low 16 bits") {
  Set("areaTopPx=0x12345 areaHeightPx=0x23456");
  Upload(UploadOf("B4", "A 00 00 45 23 10 00 56 34"));
}

// A scan of the whole length of a feeder at its first resolution, 50 dpi: 650 lines of 1300/100
// inch; but for these members of the settings.
void CheckCentring(const std::string& members, std::uint32_t left, std::uint32_t width) {
  CAPTURE(members);
  StandardScanner scanner("B4", Status(0, 0x80));
  scanner.Set("scanSource=1 resolution=50 areaLeftPx=7 areaHeightPx=650");
  scanner.Set(members);
  const ScannerSettings& settings = scanner.settings;
  const Bytes resolution = Short(settings.resolution);
  scanner.Upload("e " + Hex({settings.scanSource}) + ", " +
                 UploadOf("B4", "R " + Hex(resolution + resolution) + ", " +
                                    Area(left, 0, width, settings.areaHeightPx)));
}

TEST_CASE("standard: a whole page on the feeder at the first resolution is centred") {
  CheckCentring("areaWidthPx=1000", 304, 392);
}

TEST_CASE("standard: centring halves an unsigned difference") {
  CheckCentring("areaWidthPx=201", 0xFFFC, 208);  // (201 - 208) / 2
}

TEST_CASE("standard: without any one of its conditions nothing is centred") {
  for (const char* missing :
       {"docFeedOption=1", "resolution=100", "areaHeightPx=649", "resolution=100 areaHeightPx=1300",
        "optionHeight=1304", "scanSource=0"}) {
    CheckCentring(missing, 7, 16);
  }
}

TEST_CASE("standard: on the flatbed the length of the bed is what centring compares with") {
  CheckCentring("scanSource=0 bedHeight=1301", 0, 16);  // 650.5 lines
}

TEST_CASE("standard: the lines of an area are computed in signed 32-bit numbers") {
  CHECK(LinesOfArea(1301, 50) == 650);
  CHECK(LinesOfArea(0xFFFFFFFF, 150) == 0xFFFFFFFF);  // -1.5 toward zero
  CHECK(LinesOfArea(0xFFFFFFFF, 50) == 0);
}

}  // namespace
}  // namespace pmddb832::tests::standard
