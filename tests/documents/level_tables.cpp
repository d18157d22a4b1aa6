#include "imaging/pixel_format.h"
#include "tests/documents/table.h"
#include "wire/command_level.h"
#include "wire/gamma_codes.h"
#include "wire/halftone_codes.h"
#include "wire/value_names.h"

namespace documents {
namespace {

using namespace pmddb832;

std::string Number(std::uint64_t value) {
  return std::to_string(value);
}

// The level's letter and digits, as its identity tells them; empty for the code of none.
std::string TextOf(const LevelTraits& level) {
  std::vector<std::string> texts;
  for (const char letter : {'A', 'B'}) {
    for (char digit = '3'; digit <= '9'; ++digit) {
      if (StandardLevelCode(letter, digit) != level.code) continue;
      const bool isListed = ExtendedLevelCode(letter, digit) == level.code || letter == 'A';
      if (isListed) texts.push_back({letter, digit});
    }
  }
  return Join(texts, " ");
}

// A row: what it says of each level.
struct TraitRow {
  std::string_view name;
  std::string (*text)(const LevelTraits& level);
};

std::string Mark(bool has) {
  return has ? "yes" : "–";
}

constexpr std::array kTraitRows{
    TraitRow{"code, `commandLevel`", [](const LevelTraits& level) { return Number(level.code); }},
    TraitRow{"group, `levelGroup`", [](const LevelTraits& level) { return Number(level.group); }},
    TraitRow{"a line is clipped to, pixels",
             [](const LevelTraits& level) {
               return level.widestLine == kUnclipped ? std::string("–") : Number(level.widestLine);
             }},
    TraitRow{"status of option units, ESC f; ESC Q, ESC g",
             [](const LevelTraits& level) { return Mark(level.status); }},
    TraitRow{"gamma tables, ESC z",
             [](const LevelTraits& level) {
               return level.gammaTables == 0 ? std::string("–") : Number(level.gammaTables);
             }},
    TraitRow{"colour correction, ESC M",
             [](const LevelTraits& level) { return Mark(level.colorCorrection); }},
    TraitRow{"colour matrix, ESC m",
             [](const LevelTraits& level) { return Mark(level.colorMatrix); }},
    TraitRow{"enhancement, ESC s",
             [](const LevelTraits& level) { return Mark(level.enhancement); }},
    TraitRow{"halftone code 3 on request",
             [](const LevelTraits& level) { return Mark(level.halftoneOverride); }},
    TraitRow{"mirror, ESC K; a mirrored line keeps its right edge",
             [](const LevelTraits& level) { return Mark(level.mirror); }},
    TraitRow{"threshold, ESC t", [](const LevelTraits& level) { return Mark(level.threshold); }},
    TraitRow{"large areas, refused beyond 16 bits",
             [](const LevelTraits& level) { return Mark(level.largeAreas); }},
    TraitRow{"focus, ESC p and ESC q", [](const LevelTraits& level) { return Mark(level.focus); }},
    TraitRow{"an upload with a pending error ends behind ESC e",
             [](const LevelTraits& level) { return Mark(level.stopsAtError); }},
    TraitRow{"the page is ejected from any source",
             [](const LevelTraits& level) { return Mark(level.alwaysEjects); }},
};

Table Levels() {
  Table table{"levels", {"Trait"}, {}};
  for (const LevelTraits& level : kLevels) {
    if (IsSupported(level)) table.header.push_back(TextOf(level));
  }
  for (const TraitRow& trait : kTraitRows) {
    Row row{std::string(trait.name)};
    for (const LevelTraits& level : kLevels) {
      if (IsSupported(level)) row.push_back(trait.text(level));
    }
    table.rows.push_back(row);
  }
  return table;
}

Table Halftones() {
  Table table{"halftones", {"Row", "Code", "From level digit"}, {}};
  for (std::size_t i = 0; i < kHalftoneTable.size(); ++i) {
    table.rows.push_back(
        {Number(i), HexNumber(kHalftoneTable[i].code), Number(kHalftoneTable[i].minimumLevel)});
  }
  return table;
}

Table GammaCodes() {
  Table table{"gamma-codes", {"`gamma`", "Code"}, {}};
  for (const GammaRow& row : kGammaTable) {
    table.rows.push_back({Number(row.gamma), HexNumber(row.code)});
  }
  table.rows.push_back({"any other", HexNumber(GammaCode(0))});
  return table;
}

Row PixelCells(std::uint32_t type, bool isPreview) {
  const PixelFormat& format = *FindPixelFormat(type, isPreview);
  return {Number(type) + (isPreview ? ", preview" : ""), Number(format.bitsPerSample),
          HexNumber(format.colorMode), Number(format.pixelsPerUnit), Number(format.bytesPerUnit)};
}

Table PixelTypes() {
  Table table{"pixel-types", {"Type", "Bits", "Mode", "Pixels a unit", "Bytes a unit"}, {}};
  for (std::uint32_t type = 0; FindPixelFormat(type, false) != nullptr; ++type) {
    table.rows.push_back(PixelCells(type, false));
    if (IsDeep(type)) table.rows.push_back(PixelCells(type, true));
  }
  return table;
}

Table ColorModes() {
  Table table{"colour-modes", {"Mode", "Name"}, {}};
  for (const ValueName& mode : names::kColorModes) {
    table.rows.push_back({HexNumber(mode.value), std::string(mode.name)});
  }
  return table;
}

}  // namespace

std::vector<Table> LevelTables() {
  return {Levels(), Halftones(), GammaCodes(), PixelTypes(), ColorModes()};
}

}  // namespace documents
