#include "imaging/pixel_format.h"

#include <doctest/doctest.h>

#include <initializer_list>

namespace pmddb832::tests {
namespace {

struct Row {
  std::uint32_t pixelType;
  bool preview;
  std::uint32_t bitsPerSample;
  std::uint32_t colorMode;
  std::uint32_t pixelsPerUnit;
  std::uint32_t bytesPerUnit;
};

constexpr Row kRows[] = {
    {0, false, 1, 0x00, 8, 1}, {1, false, 4, 0x00, 2, 1},  {2, false, 8, 0x00, 1, 1},
    {3, false, 1, 0x02, 2, 1}, {4, false, 3, 0x02, 1, 1},  {5, false, 8, 0x13, 1, 3},
    {6, false, 4, 0x13, 1, 2}, {7, false, 16, 0x13, 1, 6}, {8, false, 16, 0x00, 1, 2},
    {0, true, 1, 0x00, 8, 1},  {1, true, 4, 0x00, 2, 1},   {2, true, 8, 0x00, 1, 1},
    {3, true, 1, 0x02, 2, 1},  {4, true, 3, 0x02, 1, 1},   {5, true, 8, 0x13, 1, 3},
    {6, true, 4, 0x13, 1, 2},  {7, true, 8, 0x13, 1, 3},   {8, true, 8, 0x00, 1, 1},
};

}  // namespace

TEST_CASE("every pixel type has its row; the deep types have 8-bit samples in preview mode") {
  for (const Row& row : kRows) {
    CAPTURE(row.pixelType);
    CAPTURE(row.preview);
    const PixelFormat* const format = FindPixelFormat(row.pixelType, row.preview);
    REQUIRE(format != nullptr);
    CHECK(format->bitsPerSample == row.bitsPerSample);
    CHECK(format->colorMode == row.colorMode);
    CHECK(format->pixelsPerUnit == row.pixelsPerUnit);
    CHECK(format->bytesPerUnit == row.bytesPerUnit);
  }
}

TEST_CASE("an unlisted pixel type has no row") {
  for (const std::uint32_t type : {9U, 10U, 255U, 0x80000000U, 0xFFFFFFFFU}) {
    CHECK(FindPixelFormat(type, false) == nullptr);
    CHECK(FindPixelFormat(type, true) == nullptr);
  }
}

TEST_CASE("types 7 and 8 are deep, types 1, 3 and 4 are the standard set's alone") {
  for (std::uint32_t type = 0; type < 10; ++type) {
    CAPTURE(type);
    CHECK(IsDeep(type) == (type == 7 || type == 8));
    CHECK(IsStandardSetOnly(type) == (type == 1 || type == 3 || type == 4));
  }
}

TEST_CASE("a single channel is 0x10, 0x20 or 0x30, any other choice 0") {
  CHECK(SingleChannelMode(1) == 0x10);
  CHECK(SingleChannelMode(2) == 0x20);
  CHECK(SingleChannelMode(3) == 0x30);
  for (const int channel : {0, 4, 0x11, 0x101, 0xFFFF}) {
    CHECK(SingleChannelMode(static_cast<std::uint16_t>(channel)) == 0);
  }
}

}  // namespace pmddb832::tests
