#include "capture/decode/decode_fields.h"

#include <doctest/doctest.h>

#include <array>

namespace {

using capture::DescribeFields;
using capture::FieldRow;
using pmddb832::Field;
using pmddb832::FieldShape;
using pmddb832::Named;
using pmddb832::NamedChoice;
using pmddb832::NamedFlags;
using pmddb832::ValueName;

constexpr Field<std::uint8_t, 0> kByte;
constexpr std::array kModes{ValueName{0, "off"}, ValueName{0x13, "colour"},
                            ValueName{0x15, "NAK", true}};
constexpr std::array kBits{ValueName{0x80, "installed"}, ValueName{0x02, "paper jam", true}};

FieldRow Only(const pmddb832::NamedField& field, const std::vector<std::uint8_t>& block) {
  const std::vector<FieldRow> rows = DescribeFields(std::span(&field, 1), block);
  REQUIRE(rows.size() == 1);
  return rows.front();
}

TEST_CASE("a number has its unit behind it and is little-endian") {
  constexpr Field<std::uint16_t, 1> kWord;
  CHECK(Only(Named("resolution", kWord, "dpi"), {0xFF, 0x2C, 0x01}).OneLine() ==
        "resolution 300 dpi");
}

TEST_CASE("a signed byte has its sign") {
  CHECK(Only(Named("brightness", kByte, FieldShape::kSigned), {0xFE}).value == "-2");
}

TEST_CASE("a choice has its name and its code") {
  CHECK(Only(NamedChoice("mode", kByte, kModes), {0x13}).value == "colour (0x13)");
  CHECK(Only(NamedChoice("mode", kByte, kModes), {0}).value == "off (0)");
}

TEST_CASE("a choice that has no name keeps its code") {
  CHECK(Only(NamedChoice("mode", kByte, kModes), {0x77}).value == "0x77");
}

TEST_CASE("flags are told by their names, and bits without a name are not lost") {
  CHECK(Only(NamedFlags("feeder", kByte, kBits), {0x82}).value == "installed, paper jam (0x82)");
  CHECK(Only(NamedFlags("feeder", kByte, kBits), {0x81}).value == "installed, bits 0x01 (0x81)");
  CHECK(Only(NamedFlags("feeder", kByte, kBits), {0x00}).value == "clear");
}

TEST_CASE("a value that tells of a fault is marked") {
  CHECK(Only(NamedFlags("feeder", kByte, kBits), {0x02}).isTrouble);
  CHECK_FALSE(Only(NamedFlags("feeder", kByte, kBits), {0x80}).isTrouble);
  CHECK(Only(NamedChoice("answer", kByte, kModes), {0x15}).isTrouble);
}

TEST_CASE("a text ends before its padding, and what cannot be printed becomes a dot") {
  const auto name = pmddb832::NamedText("name", 0, 6);
  CHECK(Only(name, {'A', 'B', 7, 'C', ' ', 0}).value == "\"AB.C\"");
  CHECK(Only(name, {0, 0, 0, 0, 0, 0}).value == "\"\"");
}

TEST_CASE("a focus position is told without its offset") {
  const pmddb832::NamedField position{"focus", 0, 1, FieldShape::kPosition, {}, kModes};
  CHECK(Only(position, {0x48}).value == "8 (0x48)");
  CHECK(Only(position, {0x3E}).value == "-2 (0x3E)");
  CHECK(Only(position, {0x13}).value == "colour (0x13)");
}

TEST_CASE("a field that the block does not hold whole is left out") {
  constexpr std::array kFields{Named("first", kByte), Named("second", Field<std::uint32_t, 1>{})};
  CHECK(DescribeFields(kFields, std::vector<std::uint8_t>{1, 2, 3, 4}).size() == 1);
}

TEST_CASE("bytes without a field are told when they are not 0") {
  constexpr std::array kFields{Named("first", kByte)};
  const std::vector<std::uint8_t> block{9, 0, 0x12, 0x01};
  CHECK(capture::DescribeOtherBytes(kFields, block) == "byte 2 0x12, byte 3 0x01");
}

TEST_CASE("of many bytes the first sixteen are shown") {
  CHECK(capture::HexText(std::vector<std::uint8_t>{0x1B, 0x09}) == "1B 09");
  CHECK(capture::HexText(std::vector<std::uint8_t>(17, 1)) ==
        "01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 ...");
}

}  // namespace
