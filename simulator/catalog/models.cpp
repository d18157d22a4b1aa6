#include "simulator/catalog/models.h"

#include "simulator/catalog/nearest_name.h"

namespace simulator {
namespace {

constexpr auto kNone = OptionUnit::kNone;
constexpr auto kFeeder = OptionUnit::kFeeder;
constexpr auto kTpu = OptionUnit::kTransparencyUnit;
constexpr bool kAll = false;
constexpr bool kHalf = true;

// clang-format off
constexpr Model kModels[] = {
    // id       product name       level basic max   bed         option unit, its size, flags, lists
    {"QM43000", "SCANNER QM-43000", "B8", 800, 3200,  860, 1170, kNone,      0,    0, 0x00, kAll},
    {"QM2700",  "SCANNER QM-2700 ", "B8", 600, 2400,  850, 1170, kNone,      0,    0, 0x00, kHalf},
    {"QM1000",  "SCANNER QM-1000 ", "B4", 300, 1200,  850, 1170, kNone,      0,    0, 0x00, kAll},
    {"QM2500",  "SCANNER QM-2500 ", "B7", 400, 2400,  850, 1170, kFeeder,  850, 1400, 0x00, kAll},
    {"QM5500",  "SCANNER QM-5500 ", "B8", 600, 2400,  850, 1400, kFeeder,  850, 1400, 0x20, kAll},
    {"QM6500",  "SCANNER QM-6500 ", "B8", 600, 2400,  850, 1400, kFeeder,  850, 1400, 0x38, kAll},
    {"QM6000",  "SCANNER QM-6000 ", "B7", 400, 1200,  850, 1170, kFeeder,  850, 1400, 0x30, kAll},
    {"RV5000",  "SCANNER RV-5000 ", "B5", 400, 1600, 1170, 1700, kNone,      0,    0, 0x00, kHalf},
    {"QM5700",  "SCANNER QM-5700 ", "B8", 600, 2400,  850, 1170, kTpu,     400,  500, 0x00, kAll},
    {"QM1700",  "SCANNER QM-1700 ", "B6", 600, 1200,  850, 1170, kTpu,     400,  500, 0x00, kAll},
    {"QM1600",  "SCANNER QM-1600 ", "B6", 600, 1200,  850, 1170, kNone,      0,    0, 0x00, kAll},
    {"QM8700",  "SCANNER QM-8700 ", "B8", 800, 3200,  850, 1170, kTpu,     800, 1000, 0x00, kAll},
    {"QM3200",  "SCANNER QM-3200 ", "B8", 800, 3200,  850, 1170, kTpu,     400,  500, 0x00, kAll},
    {"QM8600",  "SCANNER QM-8600 ", "B7", 600, 2400,  850, 1170, kTpu,     800, 1000, 0x00, kAll},
    {"RV3100",  "SCANNER RV-3100 ", "B7", 800, 3200,  850, 1400, kTpu,     800, 1000, 0x00, kAll},
    {"QM41000", "SCANNER QM-41000", "B8", 400, 1600, 1220, 1720, kFeeder, 1170, 1700, 0x20, kAll},
    {"RV7000H", "SCANNER RV-7000H", "B8", 600, 2400, 1170, 1700, kFeeder, 1170, 1700, 0x38, kAll},
    {"RV6000H", "SCANNER RV-6000H", "B8", 600, 2400,  850, 1400, kFeeder,  850, 1400, 0x30, kAll},
    {"RV5200",  "SCANNER RV-5200 ", "B7", 400, 1600, 1170, 1700, kFeeder, 1170, 1700, 0x00, kAll},
    {"WX4500",  "SCANNER WX-4500 ", "B8", 600, 2400,  850, 1170, kFeeder,  850, 1400, 0x20, kAll},
    {"WX4000",  "SCANNER WX-4000 ", "B7", 600, 1200,  850, 1170, kNone,      0,    0, 0x00, kAll},
    {"HK300",   "SCANNER HK-300  ", "B3", 300,  600,  850, 1400, kNone,      0,    0, 0x00, kAll},
    {"RV3000",  "SCANNER RV-3000 ", "B9",   0, 1200,  850, 1170, kFeeder,  850, 1400, 0x30, kAll},
    {"PS936XL", "Prospectra936XL ", "A5",   0,  600, 1170, 1700, kNone,      0,    0, 0x00, kAll},
    {"PS900",   "Prospectra900   ", "B4",   0, 1200,  850, 1170, kTpu,     400,  500, 0x00, kHalf},
    {"PS3100",  "Prospectra3100  ", "B5",   0, 1600, 1170, 1700, kFeeder, 1170, 1700, 0x00, kHalf},
};
// clang-format on

}  // namespace

std::span<const Model> ModelTable() {
  return kModels;
}

const Model* FindModel(Family family, std::string_view id) {
  for (const Model& model : kModels) {
    if (IsSameName(model.id, id) && model.IsOf(family)) return &model;
  }
  return nullptr;
}

}  // namespace simulator
