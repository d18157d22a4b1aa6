#include "simulator/catalog/profile.h"

#include <array>
#include <stdexcept>

#include "simulator/catalog/file_names.h"
#include "simulator/catalog/json_keys.h"
#include "simulator/catalog/profile_identity.h"

namespace simulator {
namespace {

// A file beside the profile, with the profile's folder in front.
std::string PictureFile(const JsonNode& value) {
  const std::filesystem::path picture = PathOf(TextOf(value));
  const std::filesystem::path file = PathOf(value.file).parent_path() / picture;
  std::error_code unreadable;
  if (!std::filesystem::is_regular_file(file, unreadable)) {
    value.Fail("there is no file \"" + NameOf(file) + "\"");
  }
  return NameOf(file);
}

using P = Profile::Pages;
constexpr std::array kPagesRows{
    KeyRow<P>{{"file", Text(), "A picture file beside the scanner file; without it the original."},
              [](const JsonNode& value, P& pages) { pages.file = PictureFile(value); }},
    KeyRow<P>{{"copies", Whole(1, 1000), "How many; without it one."},
              &ReadMember<P, &P::copies, &WholeOf>},
};
constexpr KeyTable<P> kPages{"pages", "pages", kPagesRows};

void ReadPages(const JsonNode& value, Profile& profile) {
  profile.pages.clear();
  for (const JsonNode& element : ElementsOf(value)) {
    P& pages = profile.pages.emplace_back();
    if (std::holds_alternative<std::string>(element.value)) {
      pages.file = PictureFile(element);
    } else {
      ReadObject(element, kPages, pages);
    }
  }
}

// What both families have.
template <class M>
constexpr std::array kMannersRows{
    KeyRow<M>{{"refusedTransfers", Whole(0, 1000),
               "How many starts of a scan are refused before one is accepted."},
              &ReadMember<M, &M::refusedTransfers, &WholeOf>},
    KeyRow<M>{{"focusFound", kByte, "The position that automatic focus reports."},
              &ReadMember<M, &M::focusFound, &ByteOf>},
    KeyRow<M>{{"focusFails", kFlag, "Automatic focus reports that it found none."},
              &ReadMember<M, &M::focusFails, &FlagOf>},
};

using E = ExtendedManners;
constexpr std::array kExtendedMannersRows{
    kMannersRows<E>[0],
    kMannersRows<E>[1],
    kMannersRows<E>[2],
    KeyRow<E> {
      {"knowsExtendedCommands", kFlag,
       "The answer to ESC I tells that the scanner knows the extended commands."},
          &ReadMember<E, &E::knowsExtendedCommands, &FlagOf>
    },
    KeyRow<E> {
      {"emptyLastBlock", kFlag, "A page of whole blocks ends with a block of 0 bytes."},
          &ReadMember<E, &E::emptyLastBlock, &FlagOf>
    },
};
constexpr KeyTable<E> kExtendedManners{"extendedManners", "manners", kExtendedMannersRows};
constexpr KeyTable<Manners> kStandardManners{"standardManners", "manners", kMannersRows<Manners>};

void ReadManners(const JsonNode& node, ExtendedManners& manners) {
  ReadObject(node, kExtendedManners, manners);
}

void ReadManners(const JsonNode& node, Manners& manners) {
  ReadObject(node, kStandardManners, manners);
}

struct OptionUnitRow {
  std::string_view name;
  OptionUnit unit;
};
constexpr std::array kOptionUnits{OptionUnitRow{"none", OptionUnit::kNone},
                                  OptionUnitRow{"feeder", OptionUnit::kFeeder},
                                  OptionUnitRow{"transparencyUnit", OptionUnit::kTransparencyUnit}};

KeyGroup DefectGroup() {
  KeyGroup group{"defects", "defects", {}};
  for (const DefectRow& row : DefectTable()) {
    group.keys.push_back({row.name, row.IsFlag() ? kFlag : kNumberOrLetter, row.sentence});
  }
  return group;
}

void ReadDefects(const JsonNode& node, Profile& profile) {
  RequireKeys(node, DefectGroup());
  for (const DefectRow& row : DefectTable()) {
    const JsonNode* const value = FindKey(node, row.name);
    if (value == nullptr) continue;
    Set(EquipmentOf(profile.config).defects, row,
        row.IsFlag() ? FlagOf(*value) : NumberOrLetterOf(*value));
  }
}

void ReadBase(const JsonNode& value, Profile& profile) {
  const std::string& name = TextOf(value);
  try {
    profile.config = ConfigOf(name);
  } catch (const std::invalid_argument& reason) {
    value.Fail(reason.what());
  }
  const std::size_t colon = name.find(':');
  if (colon != std::string::npos) profile.modelId = name.substr(colon + 1);
}

constexpr ValueKind kBase{ValueKind::Shape::kOther,
                          "the scanner it starts from, as in \"extended\" or \"standard:QM2700\"",
                          R"({"type": "string", "pattern": "^(extended|standard)(:[A-Z0-9]+)?$"})"};
constexpr ValueKind kFileOrPages{
    ValueKind::Shape::kOther, "files or objects",
    R"({"anyOf": [{"description": "A picture file.", "type": "string"}, {"$ref": "#/$defs/pages"}]})"};
constexpr ValueKind kPageList{
    ValueKind::Shape::kList, "files or objects", {}, nullptr, 0, 0, nullptr, &kFileOrPages};

// The base comes first: all the others override what it says.
constexpr std::array kProfileRows{
    KeyRow<Profile>{{"$schema", Text(), "The schema, for editors."}, &Ignore<Profile>},
    KeyRow<Profile>{{"description", Text(), "For people."},
                    &ReadMember<Profile, &Profile::description, &TextOf>},
    KeyRow<Profile>{{"base", kBase,
                     "The scanner of the catalog that all else overrides: a family, or family and "
                     "model.",
                     true},
                    &ReadBase},
    KeyRow<Profile>{{"modelId", Text(7),
                     "The id under which the host was installed for the scanner; without it that "
                     "of the base."},
                    &ReadMember<Profile, &Profile::modelId, &TextOf>},
    KeyRow<Profile>{{"identity", Object("{}"), "What the scanner says of itself."},
                    [](const JsonNode& value, Profile& profile) {
                      std::visit([&](auto& either) { ReadIdentity(value, either.identity); },
                                 profile.config);
                    }},
    KeyRow<Profile>{{"manners", Object("{}"), "Habits of the firmware."},
                    [](const JsonNode& value, Profile& profile) {
                      std::visit([&](auto& either) { ReadManners(value, either.manners); },
                                 profile.config);
                    }},
    KeyRow<Profile>{{"optionUnit", Name("an option unit", &NamesOf<kOptionUnits>),
                     "What is fitted; without it that of the base."},
                    [](const JsonNode& value, Profile& profile) {
                      EquipmentOf(profile.config).optionUnit =
                          RowNamed(kOptionUnits, TextOf(value)).unit;
                    }},
    KeyRow<Profile>{
        {"original", Text(),
         "The picture file that lies on the bed and in the transparency unit; without it a test "
         "page."},
        [](const JsonNode& value, Profile& profile) { profile.originalFile = PictureFile(value); }},
    KeyRow<Profile>{{"pages", kPageList,
                     "What lies in the feeder, the first sheet first; without it one copy of the "
                     "original."},
                    &ReadPages},
    KeyRow<Profile>{{"defects", Object(R"({"$ref": "#/$defs/defects"})"),
                     "What is wrong with the scanner; without it nothing."},
                    &ReadDefects},
    KeyRow<Profile>{
        {"faults", kFaultList, kFaultListSentence},
        [](const JsonNode& value, Profile& profile) { profile.faults = ReadFaults(value); }},
};
constexpr KeyTable<Profile> kProfile{"profile", "a scanner file", kProfileRows};

Profile ProfileOf(const JsonNode& root) {
  Profile profile;
  ReadObject(root, kProfile, profile);
  const JsonNode* const pages = FindKey(root, "pages");
  if (pages != nullptr && EquipmentOf(profile.config).optionUnit != OptionUnit::kFeeder) {
    pages->Fail("the scanner has no feeder: add \"optionUnit\": \"feeder\", or drop the pages");
  }
  return profile;
}

}  // namespace

Profile ReadProfile(const std::string& file) {
  return ProfileOf(ReadJson(file));
}

Profile ParseProfile(std::string_view text, const std::string& file) {
  return ProfileOf(ParseJson(text, file));
}

std::vector<KeyGroup> ProfileKeys() {
  std::vector<KeyGroup> groups{kProfile.Group(), kExtendedManners.Group(), kStandardManners.Group(),
                               kPages.Group(), DefectGroup()};
  for (KeyGroup& group : IdentityKeys()) groups.push_back(std::move(group));
  for (KeyGroup& group : FaultKeys()) groups.push_back(std::move(group));
  return groups;
}

}  // namespace simulator
