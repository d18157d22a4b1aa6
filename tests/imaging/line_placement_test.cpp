#include "imaging/line_placement.h"

#include <doctest/doctest.h>

#include <array>

namespace pmddb832::tests {
namespace {

// left, width, pads
using Place = std::array<std::uint32_t, 3>;

Place InGroupsOf8(std::uint32_t left, std::uint32_t width, std::uint32_t limit, bool fromRight) {
  const LinePlacement placed = PlaceInGroupsOf8(left, width, limit, fromRight);
  return {placed.left, placed.width, placed.padPixels};
}

Place ByteAligned(std::uint32_t left, std::uint32_t width, std::uint32_t limit, bool fromRight) {
  const LinePlacement placed = PlaceByteAligned(left, width, limit, fromRight);
  return {placed.left, placed.width, placed.padPixels};
}

}  // namespace

TEST_CASE("a line whose rounded width ends exactly at the limit is sent so, without pads") {
  CHECK(InGroupsOf8(91, 5, 100, false) == Place{91, 8, 0});
  CHECK(InGroupsOf8(92, 5, 100, false) == Place{92, 8, 0});
  CHECK(InGroupsOf8(93, 5, 100, false) == Place{93, 0, 5});
  CHECK(InGroupsOf8(93, 15, 102, false) == Place{93, 8, 7});
}

TEST_CASE("a mirrored line whose rounded width begins exactly at the left edge is sent so") {
  CHECK(InGroupsOf8(4, 5, 100, true) == Place{1, 8, 0});
  CHECK(InGroupsOf8(3, 5, 100, true) == Place{0, 8, 0});
  CHECK(InGroupsOf8(2, 5, 100, true) == Place{7, 0, 5});
  CHECK(InGroupsOf8(2, 9, 100, true) == Place{3, 8, 1});
}

TEST_CASE("a mirrored line that ends exactly at the limit, or beyond it, ends there") {
  CHECK(InGroupsOf8(84, 16, 100, true) == Place{84, 16, 0});
  CHECK(InGroupsOf8(85, 16, 100, true) == Place{84, 16, 0});
}

TEST_CASE("a line of whole bytes that ends exactly at the limit is sent as it is") {
  for (const bool fromRight : {false, true}) {
    CHECK(ByteAligned(94, 5, 100, fromRight) == Place{94, 5, 0});
    CHECK(ByteAligned(95, 5, 100, fromRight) == Place{95, 5, 0});
  }
}

TEST_CASE("a line of whole bytes that ends beyond the limit is cut, or moved when mirrored") {
  CHECK(ByteAligned(96, 5, 100, false) == Place{96, 4, 1});
  CHECK(ByteAligned(96, 5, 100, true) == Place{95, 5, 0});
}

}  // namespace pmddb832::tests
