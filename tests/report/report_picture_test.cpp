#include <doctest/doctest.h>

#include "pmscan/report_page/raw_pixels.h"
#include "pmscan/report_page/thumbnail.h"

namespace {

using pmscan::CapturedPage;
using pmscan::PictureShape;
using pmscan::RawPixels;
using pmscan::RgbPixel;
using pmscan::Thumbnail;
using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t kColour = 0x13;

RgbPixel PixelOf(std::uint32_t width, std::uint8_t colorMode, std::uint8_t bits, const Bytes& line,
                 std::uint32_t x) {
  const PictureShape shape{width, 1, 300, colorMode, bits};
  return RawPixels(shape, line.size()).At(line, x);
}

TEST_CASE("the leftmost pixel of line art is the highest bit, and 1 is white") {
  const Bytes line{0x01, 0x80};
  CHECK(PixelOf(11, 0, 1, line, 0) == RgbPixel{0, 0, 0});
  CHECK(PixelOf(11, 0, 1, line, 7) == RgbPixel{255, 255, 255});
  CHECK(PixelOf(11, 0, 1, line, 8) == RgbPixel{255, 255, 255});
  CHECK(PixelOf(11, 0, 1, line, 9) == RgbPixel{0, 0, 0});
}

TEST_CASE("of deep samples the high byte is shown, which is the second") {
  CHECK(PixelOf(3, 0, 12, {0x10, 0x20, 0x30, 0x40, 0x50, 0x60}, 2) == RgbPixel{0x60, 0x60, 0x60});
  const Bytes colour{1, 2, 3, 4, 5, 6};
  CHECK(PixelOf(1, kColour, 14, colour, 0) == RgbPixel{2, 4, 6});
}

TEST_CASE("a preview in deep colours has a byte a sample") {
  CHECK(PixelOf(3, 0, 12, {7, 8, 9}, 2) == RgbPixel{9, 9, 9});
  CHECK(PixelOf(1, kColour, 12, {7, 8, 9}, 0) == RgbPixel{7, 8, 9});
}

TEST_CASE("colours come in the order of their mode") {
  CHECK(PixelOf(2, kColour, 8, {1, 2, 3, 4, 5, 6}, 1) == RgbPixel{4, 5, 6});
  CHECK(PixelOf(2, 0x23, 8, {1, 2, 3, 4, 5, 6}, 1) == RgbPixel{6, 5, 4});
}

TEST_CASE("a channel scanned alone is grey") {
  CHECK(PixelOf(3, 0x20, 8, {7, 8, 9}, 1) == RgbPixel{8, 8, 8});
}

TEST_CASE("two pixels of 4-bit colour lie in three bytes, a channel each") {
  const Bytes line{0x12, 0x34, 0x56, 0x70, 0x80, 0x90};
  CHECK(PixelOf(3, kColour, 4, line, 0) == RgbPixel{17, 51, 85});
  CHECK(PixelOf(3, kColour, 4, line, 1) == RgbPixel{34, 68, 102});
  CHECK(PixelOf(3, kColour, 4, line, 2) == RgbPixel{119, 136, 153});
}

TEST_CASE("planes lie one behind the other, the upper three bits of half a byte a pixel") {
  const Bytes line{0xE0, 0x20, 0x0E, 0x40, 0x00, 0xE0};
  CHECK(PixelOf(3, 0x02, 3, line, 0) == RgbPixel{255, 0, 0});
  CHECK(PixelOf(3, 0x02, 3, line, 1) == RgbPixel{0, 255, 0});
  CHECK(PixelOf(3, 0x02, 3, line, 2) == RgbPixel{36, 72, 255});
}

TEST_CASE("what a line is too short for is white") {
  CHECK(PixelOf(5, 0, 8, {1, 2, 3}, 3) == RgbPixel{255, 255, 255});
  CHECK(PixelOf(5, kColour, 8, {1, 2, 3, 4}, 1) == RgbPixel{4, 255, 255});
}

// 5 x 3 pixels of grey in a block of two lines and one of one.
const Bytes kTwoLines{10, 20, 30, 40, 50, 60, 70, 80, 90, 100};
const Bytes kOneLine{1, 3, 5, 7, 9};

CapturedPage SmallPage() {
  CapturedPage page;
  page.shape = {5, 3, 100, 0, 8};
  page.blocks = {{2, 10, 5, false, 0, kTwoLines}, {1, 5, 5, false, 1, kOneLine}};
  return page;
}

TEST_CASE("a page that fits is shown pixel by pixel") {
  const Thumbnail thumbnail = pmscan::Shrink(SmallPage(), 5);
  CHECK(thumbnail.divisor == 1);
  CHECK(thumbnail.samples == Bytes{10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 1, 3, 5, 7, 9});
  CHECK(thumbnail.isGrey);
}

TEST_CASE("a pixel of a smaller picture is the mean of its square, which the edges cut") {
  const Thumbnail thumbnail = pmscan::Shrink(SmallPage(), 3);
  CHECK(thumbnail.width == 3);
  CHECK(thumbnail.height == 2);
  CHECK(thumbnail.samples == Bytes{40, 60, 75, 2, 6, 9});
}

TEST_CASE("the picture ends where a block has no bytes") {
  CapturedPage page = SmallPage();
  page.blocks[1].data = {};
  const Thumbnail thumbnail = pmscan::Shrink(page, 5);
  CHECK(thumbnail.lines == 2);
  CHECK(thumbnail.height == 2);
}

TEST_CASE("lines below the page are not shown") {
  CapturedPage page = SmallPage();
  page.shape.height = 1;
  CHECK(pmscan::Shrink(page, 5).samples == Bytes{10, 20, 30, 40, 50});
}

TEST_CASE("colour is shown in the order of the encoders, blue first") {
  CapturedPage page;
  const Bytes line{1, 2, 3, 5, 6, 7};
  page.shape = {2, 1, 100, kColour, 8};
  page.blocks = {{1, 6, 6, false, 0, line}};
  CHECK(pmscan::Shrink(page, 2).samples == Bytes{3, 2, 1, 7, 6, 5});
}

TEST_CASE("a width that no line can have shows nothing") {
  CapturedPage page = SmallPage();
  page.shape.width = 0xFFFFFFFF;
  CHECK(pmscan::Shrink(page, 5).samples.empty());
  page.shape.width = 41;
  CHECK(pmscan::Shrink(page, 41).samples.empty());
  CHECK(pmscan::DataAddress(Shrink(page, 41)).empty());
}

TEST_CASE("a picture is a PNG file in an address") {
  const std::string address = pmscan::DataAddress(Shrink(SmallPage(), 5));
  // Signature, and the header of 5 x 3 pixels of 8 bits, in base 64.
  CHECK(address.starts_with("data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAUAAAADCAAAAA"));
}

}  // namespace
