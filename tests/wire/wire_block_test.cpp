#include "wire/wire_block.h"

#include <doctest/doctest.h>

#include "tests/transport/scripted_device.h"

namespace pmddb832::tests {
namespace {

using Block = std::array<std::uint8_t, 12>;
constexpr Block kBlock{0x02, 0x80, 0x34, 0x12, 0x78, 0x56, 0x34, 0xF2, 0xFF, 0xFE, 0xFD, 0xFC};

constexpr Field<std::uint8_t, 1> kByte;
constexpr Field<std::uint8_t, 11> kLastByte;
constexpr Field<std::uint16_t, 2> kWord;
constexpr Field<std::uint16_t, 3> kOddWord;
constexpr Field<std::uint32_t, 4> kDoubleWord;
constexpr Field<std::uint32_t, 8> kLastDoubleWord;

std::string HexOf(const Block& block) {
  return Hex({block.begin(), block.end()});
}

}  // namespace

TEST_CASE("fields are read little-endian at their offset, unsigned") {
  CHECK(Get(kBlock, kByte) == 0x80);
  CHECK(Get(kBlock, kWord) == 0x1234);
  CHECK(Get(kBlock, kOddWord) == 0x7812);
  CHECK(Get(kBlock, kDoubleWord) == 0xF2345678);
}

TEST_CASE("fields reach to the last byte of the block") {
  CHECK(Get(kBlock, kLastByte) == 0xFC);
  CHECK(Get(kBlock, kLastDoubleWord) == 0xFCFDFEFF);
}

TEST_CASE("a narrower field at the same place reads the low half") {
  constexpr Field<std::uint16_t, 4> kLowHalf;
  CHECK(Get(kBlock, kLowHalf) == 0x5678);
}

TEST_CASE("fields are written little-endian, and only they") {
  Block block{};
  Put(block, kByte, 0xA5);
  Put(block, kWord, 0x1234);
  Put(block, kDoubleWord, 0x89ABCDEF);
  CHECK(HexOf(block) == "00 A5 34 12 EF CD AB 89 00 00 00 00");
  Put(block, kLastByte, 0xFF);
  CHECK(HexOf(block) == "00 A5 34 12 EF CD AB 89 00 00 00 FF");
}

TEST_CASE("what is written is read again") {
  Block block{};
  for (const std::uint32_t value : {0U, 1U, 0x80000000U, 0xFFFFFFFFU}) {
    Put(block, kLastDoubleWord, value);
    CHECK(Get(block, kLastDoubleWord) == value);
  }
}

TEST_CASE("fields of eight bytes work too") {
  constexpr Field<std::uint64_t, 2> kQuadWord;
  CHECK(Get(kBlock, kQuadWord) == 0xFEFFF23456781234);
  Block block{};
  Put(block, kQuadWord, 0x0102030405060708);
  CHECK(HexOf(block) == "00 00 08 07 06 05 04 03 02 01 00 00");
}

TEST_CASE("blocks can be read and written while compiling") {
  static_assert(Get(kBlock, kWord) == 0x1234);
  static_assert([] {
    Block block{};
    Put(block, kWord, 0xBEEF);
    return block[2] == 0xEF && block[3] == 0xBE;
  }());
}

TEST_CASE("an information reply starts with STX, status and a 16-bit count") {
  constexpr ReplyHeader kHeader{0x02, 0x40, 0x2C, 0x81};
  CHECK(Get(kHeader, kReplyStx) == 0x02);
  CHECK(Get(kHeader, kReplyStatus) == 0x40);
  CHECK(Get(kHeader, kReplyCount) == 0x812C);
}

}  // namespace pmddb832::tests
