#include "wire/command_table.h"

#include <doctest/doctest.h>

#include <vector>

namespace pmddb832::tests {
namespace {

using Bytes = std::vector<std::uint8_t>;

}  // namespace

TEST_CASE("a command is found by its prefix and its letter") {
  REQUIRE(FindCommand(Bytes{0x1B, 'I'}) != nullptr);
  CHECK(FindCommand(Bytes{0x1B, 'I'})->reply == ReplyKind::kLevel);
  REQUIRE(FindCommand(Bytes{0x1C, 'I'}) != nullptr);
  CHECK(FindCommand(Bytes{0x1C, 'I'})->reply == ReplyKind::kIdentityBlock);
}

TEST_CASE("an unknown letter, another prefix and other than two bytes are no command") {
  for (const Bytes& bytes : {Bytes{0x1B, 'W'}, Bytes{0x1C, '@'}, Bytes{0x1D, 'I'}, Bytes{},
                             Bytes{0x1B}, Bytes{0x1B, 'I', 0x00}}) {
    CAPTURE(bytes.size());
    CHECK(FindCommand(bytes) == nullptr);
  }
}

}  // namespace pmddb832::tests
