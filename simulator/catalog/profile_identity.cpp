#include "simulator/catalog/profile_identity.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "simulator/catalog/json_keys.h"

namespace simulator {
namespace {

constexpr ValueKind kResolution = Whole(1, 65535);
constexpr ValueKind kResolutionList{
    ValueKind::Shape::kList, "resolutions", {}, nullptr, 1, 1000, nullptr, &kResolution};

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

constexpr std::array kAreaRows{
    KeyRow<WrittenArea>{{"width", kLength, "From left to right.", true},
                        &ReadMember<WrittenArea, &WrittenArea::width, &LengthOf>},
    KeyRow<WrittenArea>{{"height", kLength, "From top to bottom.", true},
                        &ReadMember<WrittenArea, &WrittenArea::height, &LengthOf>},
    KeyRow<WrittenArea>{{"unit", Name("a unit", &NamesOf<kUnits>), "Without it pixels."},
                        [](const JsonNode& value, WrittenArea& area) {
                          area.unit = &RowNamed(kUnits, TextOf(value));
                        }},
};
constexpr KeyTable<WrittenArea> kArea{"area", "an area", kAreaRows};
constexpr ValueKind kAreaObject = Object(R"({"$ref": "#/$defs/area"})");

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
  ReadObject(node, kArea, area);
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

bool IsLevel(const JsonNode& value) {
  const auto* const text = std::get_if<std::string>(&value.value);
  const auto printable = [](char letter) { return letter > ' ' && letter < 0x7F; };
  return text != nullptr && text->size() == 2 && std::all_of(text->begin(), text->end(), printable);
}
constexpr ValueKind kLevel{ValueKind::Shape::kOther, "two characters, as in \"B8\"",
                           R"({"type": "string", "pattern": "^[!-~]{2}$"})", &IsLevel};

void ReadBasicResolution(const JsonNode& value, ExtendedIdentity& identity) {
  Rescale(identity, identity.basicResolution, WholeOf(value));
  identity.basicResolution = WholeOf(value);
}

void ReadResolutions(const JsonNode& value, StandardIdentity& identity) {
  std::vector<std::uint32_t> list;
  for (const JsonNode& element : ElementsOf(value)) {
    if (!list.empty() && WholeOf(element) <= list.back()) {
      element.FailExpecting("more than the " + std::to_string(list.back()) + " before it");
    }
    list.push_back(WholeOf(element));
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

// What both families have alike.
template <class Identity>
constexpr std::array kNameRows{
    KeyRow<Identity>{{"level", kLevel, "The command level."},
                     &ReadMember<Identity, &Identity::level, &TextOf>},
    KeyRow<Identity>{{"productName", Text(16), "What the scanner calls itself."},
                     &ReadMember<Identity, &Identity::productName, &TextOf>},
};

// Resolutions come before the areas that are counted at them.
constexpr std::array kExtendedRows{
    kNameRows<E>[0],
    kNameRows<E>[1],
    KeyRow<E> {
      {"basicResolution", kResolution, "Dots per inch at which areas are counted."},
          &ReadBasicResolution
    },
    KeyRow<E> {
      {"minResolution", kResolution, "Dots per inch; the driver doubles it."},
          &ReadMember<E, &E::minResolution, &WholeOf>
    },
    KeyRow<E>{{"maxResolution", kResolution, "Dots per inch; the driver halves it."},
              &ReadMember<E, &E::maxResolution, &WholeOf>},
    KeyRow<E>{{"flatbed", kAreaObject, "The bed; in pixels at the basic resolution."},
              &ReadAreaOf<E, &E::flatbed>},
    KeyRow<E>{{"feeder", kAreaObject,
               "What the document feeder takes; in pixels at the basic resolution."},
              &ReadAreaOf<E, &E::feeder>},
    KeyRow<E>{{"transparencyUnit", kAreaObject,
               "What the transparency unit shows; in pixels at the basic resolution."},
              &ReadAreaOf<E, &E::transparencyUnit>},
    KeyRow<E>{{"feederFlags", kByte,
               "0x20: the feeder takes option values above 1; 0x10 and 0x08: its second and third "
               "capability."},
              &ReadMember<E, &E::feederFlags, &ByteOf>},
};
constexpr KeyTable<E> kExtended{"extendedIdentity", "an identity", kExtendedRows};
constexpr std::array kStandardRows{
    kNameRows<S>[0],
    kNameRows<S>[1],
    KeyRow<S> {
      {"resolutions", kResolutionList,
       "Dots per inch, ascending; areas are counted at the last one."},
          &ReadResolutions
    },
    KeyRow<S> {
      {"listsHalf", kFlag, "The scanner scans at up to twice the last resolution that it lists."},
          &ReadMember<S, &S::listsHalf, &FlagOf>
    },
    KeyRow<S>{{"flatbed", kAreaObject, "The bed; in pixels at the last resolution."},
              &ReadAreaOf<S, &S::flatbed>},
    KeyRow<S>{{"feeder", kAreaObject,
               "What the document feeder takes; in pixels at the last resolution."},
              &ReadAreaOf<S, &S::feeder>},
    KeyRow<S>{{"transparencyUnit", kAreaObject,
               "What the transparency unit shows; in pixels at the last resolution."},
              &ReadAreaOf<S, &S::transparencyUnit>},
    KeyRow<S>{{"feederFlags", kByte,
               "0x20: the feeder takes option values above 1; 0x10: its second capability."},
              &ReadMember<S, &S::feederFlags, &ByteOf>},
};
constexpr KeyTable<S> kStandard{"standardIdentity", "an identity", kStandardRows};

}  // namespace

void ReadIdentity(const JsonNode& node, ExtendedIdentity& identity) {
  ReadObject(node, kExtended, identity);
  if (identity.minResolution <= identity.maxResolution) return;
  node.Fail("minResolution " + std::to_string(identity.minResolution) + " is above maxResolution " +
            std::to_string(identity.maxResolution));
}

void ReadIdentity(const JsonNode& node, StandardIdentity& identity) {
  ReadObject(node, kStandard, identity);
}

std::vector<KeyGroup> IdentityKeys() {
  return {kExtended.Group(), kStandard.Group(), kArea.Group()};
}

}  // namespace simulator
