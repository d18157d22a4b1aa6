#include "simulator/catalog/profile_identity.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "simulator/catalog/json_keys.h"

namespace simulator {
namespace {

constexpr std::uint32_t kHighestResolution = 65535;
constexpr std::size_t kMostResolutions = 1000;

struct UnitRow {
  std::string_view name;
  double perInch;  // 0: pixels
};
constexpr std::array kUnits{UnitRow{"pixels", 0}, UnitRow{"inches", 1}, UnitRow{"mm", 25.4}};

struct WrittenArea {
  double width = 0;
  double height = 0;
  const UnitRow* unit = kUnits.data();
};

void ReadUnit(const JsonNode& value, WrittenArea& area) {
  std::vector<std::string_view> names;
  for (const UnitRow& row : kUnits) {
    if (row.name == TextOf(value)) {
      area.unit = &row;
      return;
    }
    names.push_back(row.name);
  }
  FailUnknownName(value, "a unit", names);
}

constexpr std::array kAreaKeys{
    KeyRow<WrittenArea>{
        "width", [](const JsonNode& value, WrittenArea& area) { area.width = PositiveOf(value); }},
    KeyRow<WrittenArea>{"height", [](const JsonNode& value,
                                     WrittenArea& area) { area.height = PositiveOf(value); }},
    KeyRow<WrittenArea>{"unit", &ReadUnit},
};

std::uint32_t PixelsOf(const JsonNode& node, const WrittenArea& area, double length,
                       std::uint32_t resolution) {
  const double factor = area.unit->perInch == 0 ? 1 : resolution / area.unit->perInch;
  const double pixels = std::round(length * factor);
  if (pixels > std::numeric_limits<std::uint32_t>::max()) {
    node.Fail("the area has more pixels than a scanner can tell");
  }
  return static_cast<std::uint32_t>(pixels);
}

PixelSize ReadArea(const JsonNode& node, std::uint32_t resolution) {
  WrittenArea area;
  ReadObject<WrittenArea>(node, kAreaKeys, area);
  for (const std::string_view needed : {"width", "height"}) {
    if (FindKey(node, needed) == nullptr) {
      node.Fail("an area needs the key \"" + std::string(needed) + "\"");
    }
  }
  return {PixelsOf(node, area, area.width, resolution),
          PixelsOf(node, area, area.height, resolution)};
}

template <class Identity>
void Rescale(Identity& identity, std::uint32_t from, std::uint32_t to) {
  const auto scale = [&](std::uint32_t& pixels) {
    pixels = static_cast<std::uint32_t>(std::uint64_t{pixels} * to / from);
  };
  for (PixelSize* const area : {&identity.flatbed, &identity.feeder, &identity.transparencyUnit}) {
    scale(area->width);
    scale(area->height);
  }
}

template <class Identity>
void ReadLevel(const JsonNode& value, Identity& identity) {
  const std::string& text = TextOf(value);
  const auto printable = [](char letter) { return letter > ' ' && letter < 0x7F; };
  if (text.size() != 2 || !std::all_of(text.begin(), text.end(), printable)) {
    value.FailExpecting("two characters, as in \"B8\"");
  }
  identity.level = text;
}

template <class Identity>
void ReadProductName(const JsonNode& value, Identity& identity) {
  if (TextOf(value).size() > 16) value.FailExpecting("at most 16 characters");
  identity.productName = TextOf(value);
}

void ReadBasicResolution(const JsonNode& value, ExtendedIdentity& identity) {
  const std::uint32_t resolution = WholeOf(value, 1, kHighestResolution);
  Rescale(identity, identity.basicResolution, resolution);
  identity.basicResolution = resolution;
}

void ReadResolutions(const JsonNode& value, StandardIdentity& identity) {
  std::vector<std::uint32_t> list;
  for (const JsonNode& element : ElementsOf(value)) {
    const std::uint32_t resolution = WholeOf(element, 1, kHighestResolution);
    if (!list.empty() && resolution <= list.back()) {
      element.FailExpecting("more than the " + std::to_string(list.back()) + " before it");
    }
    list.push_back(resolution);
  }
  if (list.empty() || list.size() > kMostResolutions) {
    value.Fail("expected 1 to " + std::to_string(kMostResolutions) + " resolutions, got " +
               std::to_string(list.size()));
  }
  Rescale(identity, identity.resolutions.back(), list.back());
  identity.resolutions = list;
}

using E = ExtendedIdentity;
using S = StandardIdentity;

template <class Identity, auto kArea>
void ReadAreaOf(const JsonNode& value, Identity& identity) {
  if constexpr (std::is_same_v<Identity, E>) {
    identity.*kArea = ReadArea(value, identity.basicResolution);
  } else {
    identity.*kArea = ReadArea(value, identity.resolutions.back());
  }
}

// Resolutions come before the areas that are counted at them.
constexpr std::array kExtendedKeys{
    KeyRow<E>{"level", &ReadLevel<E>},
    KeyRow<E>{"productName", &ReadProductName<E>},
    KeyRow<E>{"basicResolution", &ReadBasicResolution},
    KeyRow<E>{"minResolution", &ReadWhole<E, &E::minResolution, 1, kHighestResolution>},
    KeyRow<E>{"maxResolution", &ReadWhole<E, &E::maxResolution, 1, kHighestResolution>},
    KeyRow<E>{"flatbed", &ReadAreaOf<E, &E::flatbed>},
    KeyRow<E>{"feeder", &ReadAreaOf<E, &E::feeder>},
    KeyRow<E>{"transparencyUnit", &ReadAreaOf<E, &E::transparencyUnit>},
    KeyRow<E>{"feederFlags", &ReadByte<E, &E::feederFlags>},
};
constexpr std::array kStandardKeys{
    KeyRow<S>{"level", &ReadLevel<S>},
    KeyRow<S>{"productName", &ReadProductName<S>},
    KeyRow<S>{"resolutions", &ReadResolutions},
    KeyRow<S>{"listsHalf", &ReadFlag<S, &S::listsHalf>},
    KeyRow<S>{"flatbed", &ReadAreaOf<S, &S::flatbed>},
    KeyRow<S>{"feeder", &ReadAreaOf<S, &S::feeder>},
    KeyRow<S>{"transparencyUnit", &ReadAreaOf<S, &S::transparencyUnit>},
    KeyRow<S>{"feederFlags", &ReadByte<S, &S::feederFlags>},
};

}  // namespace

void ReadIdentity(const JsonNode& node, ExtendedIdentity& identity) {
  ReadObject<E>(node, kExtendedKeys, identity);
  if (identity.minResolution <= identity.maxResolution) return;
  node.Fail("minResolution " + std::to_string(identity.minResolution) + " is above maxResolution " +
            std::to_string(identity.maxResolution));
}

void ReadIdentity(const JsonNode& node, StandardIdentity& identity) {
  ReadObject<S>(node, kStandardKeys, identity);
}

std::vector<std::string_view> ExtendedIdentityKeys() {
  return KeysOf<E>(kExtendedKeys);
}

std::vector<std::string_view> StandardIdentityKeys() {
  return KeysOf<S>(kStandardKeys);
}

std::vector<std::string_view> AreaKeys() {
  return KeysOf<WrittenArea>(kAreaKeys);
}

}  // namespace simulator
