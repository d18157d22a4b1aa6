#include <utility>
#include <vector>

#include "standard/scan_area.h"
#include "tests/standard/standard_fixture.h"

// Sizes that are exactly at a limit, and the next ones.

namespace pmddb832::tests::standard {
namespace {

// The result and the code of a set-up of a line of that width, in output format 1.
std::pair<std::uint32_t, std::uint32_t> SetUp(std::uint32_t pixelType, std::uint32_t width) {
  OpenB4 scanner;
  scanner.settings.pixelType = pixelType;
  scanner.settings.areaWidthPx = width;
  scanner.InitAcquire(1);
  return {scanner.setup.status, PMGetScanError()};
}
constexpr std::pair kFits{kGoOn, 0u};
constexpr std::pair kTooLarge{kFailed, 16u};

// A scan into a receive buffer of the usual size, whose only block is of that size: whether it was
// taken.
bool TakesBlock(std::uint16_t lineBytes, std::uint16_t lines, std::uint32_t pixelType = 2,
                std::uint32_t preview = 0) {
  OpenB4 scanner;
  scanner.settings.pixelType = pixelType;
  scanner.settings.previewMode = preview;
  scanner.settings.areaHeightPx = 1;
  scanner.StartWithoutUpload(BlockHeader(0x20, lineBytes, lines));
  const std::size_t bytes = std::size_t{lineBytes} * lines;
  if (bytes == 65280 || bytes == 130560) scanner.device.Reply(Fill(bytes, 1));
  const bool taken = scanner.Acquire(96, 3).record.status == kGoOn;
  CHECK(PMGetScanError() == (taken ? 0 : 9));
  return taken;
}

// A scanner with these resolutions and a flatbed of that width, and a request from `left` on that
// is wider than any area.
struct Bed : StandardScanner {
  Bed(const std::vector<std::uint16_t>& resolutions, std::uint32_t bedWidth,
      std::string_view product = "SCANNER QM-8700 ") {
    const Bytes identity = IdentityOf("B4", resolutions);
    REQUIRE(Open(With(identity, identity.size() - 4, Short(bedWidth)), standard::Status(),
                 Product(product)) == 1);
    settings.areaWidthPx = 9000;
  }

  void CheckSent(std::uint16_t resolution, std::uint16_t zoom, std::uint32_t left,
                 std::uint32_t width) {
    settings.resolution = resolution;
    settings.zoom = zoom;
    settings.areaLeftPx = left;
    const std::string dpi = Hex(Short(resolution));
    const std::string percent = Hex({static_cast<std::uint8_t>(zoom)});
    const std::string upload = Replaced(UploadOf("B4"), "R 64 00 64 00, H 64 64",
                                        "R " + dpi + " " + dpi + ", H " + percent + " " + percent);
    const std::string area = "A " + Hex(Short(left)) + " 00 00 " + Hex(Short(width)) + " 04 00";
    Upload(Replaced(upload, "A 00 00 00 00 10 00 04 00", area));
  }
};

TEST_CASE("standard: a block may fill the usual receive buffer, and not a byte more") {
  CHECK(TakesBlock(65280, 1));
  CHECK_FALSE(TakesBlock(65281, 1));
  CHECK(TakesBlock(32640, 2));
}

TEST_CASE("standard: a block of the palette may be twice as large, and not a byte more") {
  CHECK(TakesBlock(43520, 3, 4));
  CHECK_FALSE(TakesBlock(953, 137, 4));  // 130561
}

TEST_CASE("standard: so may a block of a deep type in preview mode, and in that mode only") {
  for (const std::uint32_t type : {7u, 8u}) {
    CAPTURE(type);
    CHECK(TakesBlock(43520, 3, type, 1));
    CHECK_FALSE(TakesBlock(953, 137, type, 1));
    CHECK(TakesBlock(65280, 1, type));
    CHECK_FALSE(TakesBlock(65281, 1, type));
  }
  CHECK_FALSE(TakesBlock(65281, 1, 5, 1));
}

TEST_CASE("standard: a grey line and 30 bytes make 64270 at most, of any number of bytes") {
  CHECK(SetUp(1, 128480) == kFits);      // 64240
  CHECK(SetUp(1, 128482) == kTooLarge);  // 64241
  CHECK(SetUp(2, 64240) == kFits);
  CHECK(SetUp(2, 64241) == kTooLarge);
}

TEST_CASE("standard: a colour line and 60 bytes make 64270 at most, of any number of bytes") {
  CHECK(SetUp(3, 128420) == kFits);      // 64210
  CHECK(SetUp(3, 128422) == kTooLarge);  // 64211
}

TEST_CASE("standard: the area's width is rounded to the nearest pixel, half a pixel up") {
  Bed({50, 100}, 1001).CheckSent(50, 100, 5, 496);     // 500.50 pixels are 501
  Bed({50, 100}, 1049).CheckSent(101, 100, 260, 792);  // 1059.49 are 1059
}

TEST_CASE("standard: up to a product of 80000 the area's width is not rounded down to 8") {
  Bed({50, 300}, 1000).CheckSent(400, 200, 3, 2664);  // 2667 pixels
  Bed({50, 300}, 1000).CheckSent(26667, 3, 3, 2656);  // 80001: 2664 pixels
}

TEST_CASE("standard: the product's limit of a model of quirk 1 is 80000") {
  Bed({50, 300}, 1000, "SCANNER QM-2700 ").CheckSent(400, 200, 3, 2664);
  Bed({50, 300}, 1000, "Prospectra900   ").CheckSent(400, 200, 3, 2664);
  Bed({50, 300}, 1000, "Prospectra900   ").CheckSent(26667, 3, 3, 2656);
}

TEST_CASE("standard: the product's limit of a model of quirk 3 is 160000") {
  Bed({50, 300}, 1000, "SCANNER RV-5000 ").CheckSent(800, 200, 5, 5328);  // 5333 pixels
  Bed({50, 300}, 1000, "Prospectra3100  ").CheckSent(800, 200, 5, 5328);
  Bed({50, 300}, 1000, "SCANNER RV-5000 ").CheckSent(801, 200, 4, 5328);  // 5336 pixels
}

TEST_CASE("standard: a mirrored line that ends exactly at the limit has its pads") {
  CHECK(PlaceLine(792, 201, 1000, TraitsOf(2), true, 0).padPixels == 7);
  CHECK(PlaceLine(793, 201, 1000, TraitsOf(2), true, 0).padPixels == 1);  // cut to 200
}

TEST_CASE("standard: each of the limits of level B8 refuses an area by itself") {
  const LevelTraits& level = TraitsOf(8);
  CHECK(AreaError(level, 65535, 65535, 32752, 65535) == 0);
  CHECK(AreaError(level, 65536, 0, 16, 4) == 34);
  CHECK(AreaError(level, 0, 65536, 16, 4) == 34);
  CHECK(AreaError(level, 0, 0, 32753, 4) == 35);
  CHECK(AreaError(level, 0, 0, 16, 65536) == 35);
}

TEST_CASE_FIXTURE(StandardScanner, "standard: a last resolution of 0x8000 is taken as it is") {
  CHECK(Open(IdentityOf("B4", {50, 0x8000})) == 1);
  CHECK(settings.baseResolution == 0x8000);
}

TEST_CASE_FIXTURE(StandardScanner,
                  "standard: a last resolution of 0x8000 cannot be doubled: code 1") {
  AnswerProbe();
  AnswerReset();
  Answer('?', {Product("SCANNER QM-2700 ")});
  Answer('I', {IdentityOf("B4", {50, 0x8000})});
  CHECK(PMOpenScanner(&settings) == 0);
  CHECK(PMGetScanError() == 1);
}

TEST_CASE("standard: an identity of fewer than ten bytes is code 1") {
  for (std::size_t size = 0; size < 10; ++size) {
    CAPTURE(size);
    StandardScanner scanner;
    scanner.AnswerProbe();
    scanner.AnswerReset();
    scanner.Answer('?', {Product()});
    scanner.Answer('I', {Bytes(Fill(size, 0x42))});
    CHECK(PMOpenScanner(&scanner.settings) == 0);
    CHECK(PMGetScanError() == 1);
  }
  StandardScanner scanner;
  CHECK(scanner.Open(FromHex("42 34 52 64 00 41 E8 03 78 05")) == 1);
  CHECK(scanner.settings.minResolution == 100);
  CHECK(scanner.settings.bedWidth == 1000);
}

}  // namespace
}  // namespace pmddb832::tests::standard
