#include "wire/halftone_codes.h"

#include <doctest/doctest.h>

#include <limits>

namespace pmddb832::tests {

TEST_CASE("halftone codes: ten rows, and row 0 for every other index") {
  const std::uint8_t codes[] = {0x01, 0x00, 0x10, 0x20, 0x80, 0x90, 0xA0, 0xB0, 0x03, 0x00};
  for (std::int32_t row = 0; row < 10; ++row) CHECK(HalftoneCode(row) == codes[row]);
  for (const std::int32_t row : {-1, 10, 255, 0x10000, std::numeric_limits<std::int32_t>::max(),
                                 std::numeric_limits<std::int32_t>::min()}) {
    CHECK(HalftoneCode(row) == 0x01);
  }
}

}  // namespace pmddb832::tests
