#include <doctest/doctest.h>

#include <array>

#include "simulator/device/line_format.h"
#include "simulator/extended/extended_scanner.h"
#include "simulator/page/sampling.h"
#include "tests/simulator/simulator_conversation.h"

// Which of the picture's pixels make a scanned pixel.

using namespace simulator_test;
using simulator::Picture;

namespace {

// One line of grey pixels.
Picture Row(const std::vector<std::uint16_t>& values) {
  Picture picture{static_cast<std::uint32_t>(values.size()), 1, 100, {}};
  for (const std::uint16_t value : values) {
    picture.samples.insert(picture.samples.end(), 3, value);
  }
  return picture;
}

std::vector<std::uint16_t> Scanned(const Picture& picture, std::uint32_t dotsPerInch,
                                   std::uint32_t width, std::uint32_t y = 0) {
  std::vector<std::uint16_t> values;
  for (std::uint32_t x = 0; x < width; ++x) {
    values.push_back(simulator::ScannedPixel(picture, dotsPerInch, x, y)[0]);
  }
  return values;
}

using Values = std::vector<std::uint16_t>;

}  // namespace

TEST_CASE("simulator: at the picture's resolution a scan is the picture") {
  const Picture picture = Pattern(9, 7);
  simulator::LineSampler sampler(picture, 100, 0, 9);
  for (std::uint32_t y = 0; y < 7; ++y) {
    const auto row = picture.samples.begin() + y * 27;
    CHECK(sampler.Line(y) == Values(row, row + 27));
  }
}

TEST_CASE("simulator: at half the resolution a pixel is the mean of the four inside it") {
  Picture picture{2, 2, 100, {}};
  for (const std::uint16_t value : Values{10, 20, 30, 41}) {
    picture.samples.insert(picture.samples.end(), 3, value);
  }
  CHECK(Scanned(picture, 50, 1) == Values{25});
}

TEST_CASE("simulator: only pixels whose centres lie inside count") {
  // A footprint of 1.49 pixels has the first centre, at 0.5, and not the second, at 1.5.
  CHECK(Scanned(Row({100, 200, 300, 400, 500, 600}), 67, 1) == Values{100});
  CHECK(Scanned(Row({100, 200, 300}), 50, 1) == Values{(100 + 200 + 0xFFFF * 2 + 2) / 4});
}

TEST_CASE("simulator: above the picture's resolution pixels repeat") {
  Picture picture = Row({100, 200, 300});
  CHECK(Scanned(picture, 200, 6) == Values{100, 100, 200, 200, 300, 300});
  CHECK(Scanned(picture, 150, 4) == Values{100, 200, 200, 300});
}

TEST_CASE("simulator: beyond the picture the bed is white") {
  CHECK(Scanned(Row({100}), 100, 3) == Values{100, 0xFFFF, 0xFFFF});
  CHECK(Scanned(Row({100}), 100, 1, 1) == Values{0xFFFF});
  CHECK(Scanned(Picture{}, 300, 2) == Values{0xFFFF, 0xFFFF});
}

TEST_CASE("simulator: the line sampler follows the plain rule at every resolution") {
  const Picture picture = Pattern(23, 11);
  for (const std::uint32_t dotsPerInch : {25U, 33U, 50U, 67U, 99U, 100U, 101U, 150U, 200U, 301U}) {
    const std::uint32_t left = dotsPerInch / 20;
    simulator::LineSampler sampler(picture, dotsPerInch, left, 30);
    for (std::uint32_t y = 0; y < 14; ++y) {
      const Values& line = sampler.Line(y);
      for (std::uint32_t x = 0; x < 30; ++x) {
        const auto expected = simulator::ScannedPixel(picture, dotsPerInch, left + x, y);
        REQUIRE(Values(line.begin() + x * 3, line.begin() + x * 3 + 3) ==
                Values(expected.begin(), expected.end()));
      }
    }
  }
}

TEST_CASE("simulator: what the scanner delivers is the area, whatever depth, mode and place") {
  struct Row {
    std::uint32_t resolution, left, top, width, height;
    std::uint8_t mode, bits, linesPerBlock, mirror;
    std::uint32_t lineBytes;
  };
  for (const Row& row :
       {Row{100, 0, 0, 200, 200, 0x13, 8, 7, 0, 600}, Row{50, 10, 20, 80, 60, 0x23, 8, 60, 1, 240},
        Row{200, 3, 5, 40, 33, 0x00, 1, 2, 0, 5}, Row{75, 1, 1, 17, 9, 0x13, 4, 1, 1, 34},
        Row{150, 0, 7, 31, 20, 0x20, 12, 254, 0, 62}, Row{100, 9, 9, 8, 8, 0x13, 14, 3, 0, 48},
        Row{100, 190, 190, 10, 10, 0x00, 16, 2, 1, 20}}) {
    auto config = SmallFlatbed();
    simulator::ExtendedScanner scanner(config);
    Bytes block = ParameterBlock();
    std::size_t offset = 0;
    for (const std::uint32_t value :
         {row.resolution, row.resolution, row.left, row.top, row.width, row.height}) {
      Put32(block, offset, value);
      offset += 4;
    }
    block[24] = row.mode;
    block[25] = row.bits;
    block[28] = row.linesPerBlock;
    block[36] = row.mirror;
    const Bytes image = ScanWith(scanner, block, row.lineBytes);
    CHECK(image.size() == row.lineBytes * row.height);
    CHECK(image == simulator::ScannedArea(config.onBed, *scanner.Request()));
    CheckNoViolations(scanner);
  }
}
