#include "wire/command_level.h"

#include <doctest/doctest.h>

#include <initializer_list>
#include <string>

#include "transport/identification.h"

namespace pmddb832::tests {
namespace {

// "DIGIT=CODE" for each digit that has another code than `usual` behind the letter.
std::string CodesBut(std::uint32_t usual, std::uint32_t (*codeOf)(char, char), char letter) {
  std::string codes;
  for (int digit = 0; digit < 256; ++digit) {
    const std::uint32_t code = codeOf(letter, static_cast<char>(digit));
    if (code == usual) continue;
    codes += (codes.empty() ? "" : " ") + std::string(1, static_cast<char>(digit)) + "=" +
             std::to_string(code);
  }
  return codes;
}

// Code, group, widest line and number of gamma tables, and an x for each capability, in the order
// of the table below.
std::string RowOf(const LevelTraits& level) {
  std::string row = std::to_string(level.code) + " " + std::to_string(level.group) + " " +
                    std::to_string(level.widestLine) + " " + std::to_string(level.gammaTables) +
                    " ";
  for (const bool has : {level.status, level.colorCorrection, level.colorMatrix, level.enhancement,
                         level.halftoneOverride, level.mirror, level.threshold, level.largeAreas,
                         level.focus, level.stopsAtError, level.alwaysEjects}) {
    row += has ? 'x' : '.';
  }
  return row;
}

// status, colour correction, colour matrix, enhancement, halftone override, mirror, threshold,
// large areas, focus, stops at an error, always ejects
constexpr const char* kRows[] = {
    "0 6 16128 0 .x.........",       // not supported
    "1 4 4096 0 .x.........",        // B3
    "2 5 16128 3 xxx........",       // B4
    "3 5 16128 3 xxx.xx.....",       // B5
    "4 5 16128 1 x..xxx....x",       // A5
    "6 6 16128 3 xxxxxx...x.",       // B6
    "7 6 16128 3 xxxxxx...x.",       // B7
    "8 6 4294967295 3 xxxxxxxxxx.",  // B8
};

}  // namespace

TEST_CASE("the extended levels are B3 to B8") {
  CHECK(CodesBut(0, ExtendedLevelCode, 'B') == "3=1 4=2 5=3 6=6 7=7 8=8");
  for (int letter = 0; letter < 256; ++letter) {
    if (letter == 'B') continue;
    CAPTURE(letter);
    CHECK(CodesBut(0, ExtendedLevelCode, static_cast<char>(letter)) == "");
  }
}

TEST_CASE("the standard levels are A5 and every B, of which those that are not listed are as B6") {
  CHECK(CodesBut(0, StandardLevelCode, 'A') == "5=4");
  CHECK(CodesBut(6, StandardLevelCode, 'B') == "3=1 4=2 5=3 7=7 8=8");
  for (int letter = 0; letter < 256; ++letter) {
    if (letter == 'A' || letter == 'B') continue;
    CAPTURE(letter);
    CHECK(CodesBut(0, StandardLevelCode, static_cast<char>(letter)) == "");
  }
}

TEST_CASE("scanners are old up to digit 2, and send lines in blocks from digit 4 on, as signed") {
  for (int digit = 0; digit < 256; ++digit) {
    CAPTURE(digit);
    const char character = static_cast<char>(digit);
    CHECK(IsDigitOfOldScanner(character) == (digit <= 0x32 || digit >= 0x80));
    CHECK(SendsLinesInBlocks(character) == (digit >= 0x34 && digit < 0x80));
  }
}

TEST_CASE("every level has its row of capabilities") {
  REQUIRE(kLevels.size() == std::size(kRows));
  for (std::size_t i = 0; i < kLevels.size(); ++i) CHECK(RowOf(kLevels[i]) == kRows[i]);
}

TEST_CASE("a level's row is found by its code, and is that of 0 for a code that no scanner has") {
  for (const std::uint32_t code : {0u, 1u, 2u, 3u, 4u, 6u, 7u, 8u}) {
    CHECK(TraitsOf(code).code == code);
  }
  for (const std::uint32_t code : {5u, 9u, 256u, 0xFFFFFFFFu}) CHECK(TraitsOf(code).code == 0);
}

TEST_CASE("the level group is 4 for level 1, 5 for levels 2 to 4, else 6") {
  const std::uint16_t groups[] = {6, 4, 5, 5, 5, 6, 6, 6, 6};
  for (std::uint32_t level = 0; level < 9; ++level) {
    CAPTURE(level);
    ScannerSettings settings{};
    StoreLevelGroupAndRange(settings, TraitsOf(level));
    CHECK(settings.levelGroup == groups[level]);
  }
}

TEST_CASE("the range is enabled, from 50 to 200") {
  ScannerSettings settings{};
  StoreLevelGroupAndRange(settings, TraitsOf(8));
  CHECK(settings.rangeEnabled == 1);
  CHECK(settings.rangeMin == 50);
  CHECK(settings.rangeMax == 200);
}

}  // namespace pmddb832::tests
