#include "simulator/catalog/catalog.h"

#include <array>
#include <charconv>
#include <stdexcept>
#include <utility>

#include "simulator/catalog/models.h"
#include "simulator/catalog/nearest_name.h"
#include "simulator/device/level_reply.h"

namespace simulator {
namespace {

// A family by its name, and the model that stands for it.
struct FamilyRow {
  Family family;
  std::string_view name;
  std::string_view plainModel;
};
constexpr std::array kFamilies{
    FamilyRow{Family::kExtended, "extended", "QM2700"},
    FamilyRow{Family::kStandard, "standard", "QM43000"},
};

const std::string kPages = std::string(kPagesName) + "=";
constexpr std::uint32_t kMostPages = 1000;

std::string Quoted(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

// Cuts off and returns what comes before `separator`; the rest behind it stays.
std::string_view CutBefore(std::string_view& rest, char separator) {
  const std::size_t at = rest.find(separator);
  const std::string_view head = rest.substr(0, at);
  rest = at == std::string_view::npos ? std::string_view{} : rest.substr(at + 1);
  return head;
}

[[noreturn]] void ThrowUnknown(std::string_view name) {
  const std::vector<std::string> known = ScannerNames();
  const std::string meant = SuggestName(name, {known.begin(), known.end()});
  throw std::invalid_argument(
      "no scanner is named " + Quoted(name) +
      (meant.empty() ? "; a name is \"extended\" or \"standard\", or one of them with a model "
                       "behind it, as in \"extended:QM2700\""
                     : meant));
}

std::uint32_t ParsePages(std::string_view text) {
  std::uint32_t pages = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, pages);
  if (error != std::errc{} || stop != end || pages > kMostPages) {
    throw std::invalid_argument("pages is a number from 0 to " + std::to_string(kMostPages) +
                                ", got " + Quoted(text));
  }
  return pages;
}

// What stands behind the first "+" of a name.
struct Extras {
  std::uint32_t pages = 1;
  Defects defects;
};

Extras ParseExtras(std::string_view text) {
  Extras extras;
  while (!text.empty()) {
    const std::string_view item = CutBefore(text, '+');
    if (item.starts_with(kPages)) {
      extras.pages = ParsePages(item.substr(kPages.size()));
    } else {
      SwitchOn(extras.defects, item);
    }
  }
  return extras;
}

// Pixels of a size in hundredths of an inch.
PixelSize PixelsOf(std::uint32_t width, std::uint32_t height, std::uint32_t dotsPerInch) {
  return {width * dotsPerInch / 100, height * dotsPerInch / 100};
}

// What both families' identities say alike; areas in pixels at `dotsPerInch`.
template <class Identity>
Identity IdentityOf(const Model& model, std::uint32_t dotsPerInch) {
  const PixelSize option = PixelsOf(model.optionWidth, model.optionHeight, dotsPerInch);
  Identity identity;
  identity.level = model.level;
  identity.productName = model.productName;
  identity.flatbed = PixelsOf(model.bedWidth, model.bedHeight, dotsPerInch);
  identity.feeder = model.optionUnit == OptionUnit::kFeeder ? option : PixelSize{};
  identity.transparencyUnit =
      model.optionUnit == OptionUnit::kTransparencyUnit ? option : PixelSize{};
  identity.feederFlags = model.feederFlags;
  return identity;
}

ExtendedScannerConfig ExtendedConfig(const Model& model) {
  ExtendedScannerConfig config;
  config.identity = IdentityOf<ExtendedIdentity>(model, model.basicResolution);
  config.identity.basicResolution = model.basicResolution;
  config.identity.maxResolution = model.maxResolution;
  return config;
}

StandardScannerConfig StandardConfig(const Model& model) {
  const std::uint32_t listed = model.maxResolution / (model.listsHalf ? 2 : 1);
  StandardScannerConfig config;
  config.identity = IdentityOf<StandardIdentity>(model, listed);
  config.identity.resolutions = UsualResolutions(listed);
  config.identity.listsHalf = model.listsHalf;
  return config;
}

const FamilyRow* FindFamily(std::string_view name) {
  for (const FamilyRow& row : kFamilies) {
    if (IsSameName(row.name, name)) return &row;
  }
  return nullptr;
}

}  // namespace

ScannerConfig ConfigOf(std::string_view name) {
  std::string_view modelId = name;
  const std::string_view familyName = CutBefore(modelId, ':');
  const FamilyRow* const row = FindFamily(familyName);
  if (row == nullptr) ThrowUnknown(name);
  const Model* const model = FindModel(row->family, familyName == name ? row->plainModel : modelId);
  if (model == nullptr) ThrowUnknown(name);
  ScannerConfig config = row->family == Family::kExtended ? ScannerConfig(ExtendedConfig(*model))
                                                          : ScannerConfig(StandardConfig(*model));
  EquipmentOf(config).optionUnit = model->optionUnit;
  return config;
}

std::string ModelIdOf(std::string_view name) {
  std::string_view modelId = name.substr(0, name.find('+'));
  const FamilyRow* const row = FindFamily(CutBefore(modelId, ':'));
  const Model* const model = row == nullptr ? nullptr : FindModel(row->family, modelId);
  return model == nullptr ? std::string() : std::string(model->id);
}

Equipment& EquipmentOf(ScannerConfig& config) {
  return std::visit([](auto& either) -> Equipment& { return either; }, config);
}

std::unique_ptr<Scanner> MakeScanner(ScannerConfig config) {
  if (auto* const extended = std::get_if<ExtendedScannerConfig>(&config)) {
    return std::make_unique<ExtendedScanner>(std::move(*extended));
  }
  return std::make_unique<StandardScanner>(std::move(std::get<StandardScannerConfig>(config)));
}

std::unique_ptr<Scanner> MakeScanner(std::string_view name, Picture onBed) {
  std::string_view rest = name;
  ScannerConfig config = ConfigOf(CutBefore(rest, '+'));
  const Extras extras = ParseExtras(rest);
  Equipment& equipment = EquipmentOf(config);
  if (equipment.optionUnit == OptionUnit::kFeeder) {
    equipment.feederPages.assign(1, onBed);
    equipment.feederCopies.assign(1, extras.pages);
  }
  equipment.onBed = std::move(onBed);
  equipment.defects = extras.defects;
  return MakeScanner(std::move(config));
}

std::vector<std::string> ScannerNames() {
  std::vector<std::string> names;
  for (const FamilyRow& row : kFamilies) {
    names.emplace_back(row.name);
    for (const Model& model : ModelTable()) {
      if (!model.IsOf(row.family)) continue;
      names.push_back(std::string(row.name) + ":" + std::string(model.id));
    }
  }
  return names;
}

}  // namespace simulator
