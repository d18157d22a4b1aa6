#include "simulator/catalog/profile.h"

#include <array>
#include <stdexcept>

#include "simulator/catalog/file_names.h"
#include "simulator/catalog/json_keys.h"
#include "simulator/catalog/profile_identity.h"

namespace simulator {
namespace {

constexpr std::uint32_t kMostCopies = 1000;
constexpr std::size_t kModelIdCharacters = 7;
constexpr std::uint32_t kMostRefusals = 1000;

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
constexpr std::array kPagesKeys{
    KeyRow<P>{"file", [](const JsonNode& value, P& pages) { pages.file = PictureFile(value); }},
    KeyRow<P>{"copies", &ReadWhole<P, &P::copies, 1, kMostCopies>},
};

void ReadPages(const JsonNode& value, Profile& profile) {
  profile.pages.clear();
  for (const JsonNode& element : ElementsOf(value)) {
    P& pages = profile.pages.emplace_back();
    if (std::holds_alternative<std::string>(element.value)) {
      pages.file = PictureFile(element);
    } else {
      ReadObject<P>(element, kPagesKeys, pages);
    }
  }
}

using E = ExtendedManners;
constexpr std::array kExtendedMannersKeys{
    KeyRow<E>{"refusedTransfers", &ReadWhole<E, &E::refusedTransfers, 0, kMostRefusals>},
    KeyRow<E>{"focusFound", &ReadByte<E, &E::focusFound>},
    KeyRow<E>{"focusFails", &ReadFlag<E, &E::focusFails>},
    KeyRow<E>{"knowsExtendedCommands", &ReadFlag<E, &E::knowsExtendedCommands>},
    KeyRow<E>{"emptyLastBlock", &ReadFlag<E, &E::emptyLastBlock>},
};

using M = Manners;
constexpr std::array kStandardMannersKeys{
    KeyRow<M>{"refusedTransfers", &ReadWhole<M, &M::refusedTransfers, 0, kMostRefusals>},
    KeyRow<M>{"focusFound", &ReadByte<M, &M::focusFound>},
    KeyRow<M>{"focusFails", &ReadFlag<M, &M::focusFails>},
};

void ReadManners(const JsonNode& node, ExtendedManners& manners) {
  ReadObject<E>(node, kExtendedMannersKeys, manners);
}

void ReadManners(const JsonNode& node, Manners& manners) {
  ReadObject<M>(node, kStandardMannersKeys, manners);
}

struct OptionUnitRow {
  std::string_view name;
  OptionUnit unit;
};
constexpr std::array kOptionUnits{OptionUnitRow{"none", OptionUnit::kNone},
                                  OptionUnitRow{"feeder", OptionUnit::kFeeder},
                                  OptionUnitRow{"transparencyUnit", OptionUnit::kTransparencyUnit}};

void ReadOptionUnit(const JsonNode& value, Profile& profile) {
  std::vector<std::string_view> names;
  for (const OptionUnitRow& row : kOptionUnits) {
    if (row.name == TextOf(value)) {
      EquipmentOf(profile.config).optionUnit = row.unit;
      return;
    }
    names.push_back(row.name);
  }
  FailUnknownName(value, "an option unit", names);
}

std::vector<std::string_view> DefectNames() {
  std::vector<std::string_view> names;
  for (const DefectRow& row : DefectTable()) names.push_back(row.name);
  return names;
}

std::uint32_t NumberOrLetter(const JsonNode& value) {
  if (const auto* text = std::get_if<std::string>(&value.value); text && text->size() == 1) {
    return static_cast<unsigned char>(text->front());
  }
  const auto* const number = std::get_if<std::int64_t>(&value.value);
  if (number == nullptr || *number < 0 || *number > 0xFFFFFFFF) {
    value.FailExpecting("a whole number, or the letter of a command in quotes");
  }
  return static_cast<std::uint32_t>(*number);
}

void ReadDefects(const JsonNode& node, Profile& profile) {
  RequireKnownKeys(node, DefectNames());
  Defects& defects = EquipmentOf(profile.config).defects;
  for (const DefectRow& row : DefectTable()) {
    const JsonNode* const value = FindKey(node, row.name);
    if (value == nullptr) continue;
    Set(defects, row, row.IsFlag() ? FlagOf(*value) : NumberOrLetter(*value));
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

void ReadModelId(const JsonNode& value, Profile& profile) {
  if (TextOf(value).size() > kModelIdCharacters) value.FailExpecting("at most 7 characters");
  profile.modelId = TextOf(value);
}

// The base comes first: all the others override what it says.
constexpr std::array kProfileKeys{
    KeyRow<Profile>{"$schema", &IgnoreText<Profile>},
    KeyRow<Profile>{"description", &ReadText<Profile, &Profile::description>},
    KeyRow<Profile>{"base", &ReadBase},
    KeyRow<Profile>{"modelId", &ReadModelId},
    KeyRow<Profile>{"identity",
                    [](const JsonNode& value, Profile& profile) {
                      std::visit([&](auto& either) { ReadIdentity(value, either.identity); },
                                 profile.config);
                    }},
    KeyRow<Profile>{"manners",
                    [](const JsonNode& value, Profile& profile) {
                      std::visit([&](auto& either) { ReadManners(value, either.manners); },
                                 profile.config);
                    }},
    KeyRow<Profile>{"optionUnit", &ReadOptionUnit},
    KeyRow<Profile>{
        "original",
        [](const JsonNode& value, Profile& profile) { profile.originalFile = PictureFile(value); }},
    KeyRow<Profile>{"pages", &ReadPages},
    KeyRow<Profile>{"defects", &ReadDefects},
    KeyRow<Profile>{"faults", [](const JsonNode& value,
                                 Profile& profile) { profile.faults = ReadFaults(value); }},
};

Profile ProfileOf(const JsonNode& root) {
  if (FindKey(root, "base") == nullptr) {
    root.Fail(
        "a profile needs the key \"base\": the scanner it starts from, as in \"extended\" or "
        "\"standard:QM2700\"");
  }
  Profile profile;
  ReadObject<Profile>(root, kProfileKeys, profile);
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
  return {{"profile", KeysOf<Profile>(kProfileKeys)},
          {"extendedIdentity", ExtendedIdentityKeys()},
          {"standardIdentity", StandardIdentityKeys()},
          {"area", AreaKeys()},
          {"extendedManners", KeysOf<E>(kExtendedMannersKeys)},
          {"standardManners", KeysOf<M>(kStandardMannersKeys)},
          {"pages", KeysOf<P>(kPagesKeys)},
          {"defects", DefectNames()},
          {"faultScript", FaultScriptKeys()},
          {"fault", FaultKeys()},
          {"place", FaultPlaceKeys()},
          {"action", FaultActionKeys()}};
}

}  // namespace simulator
