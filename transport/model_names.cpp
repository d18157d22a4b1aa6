#include "transport/model_names.h"

#include <algorithm>
#include <array>

#include "interface/scanner_settings.h"

namespace pmddb832 {
namespace {

struct ModelRow {
  std::string_view modelId;
  std::string_view reportedName;
};

constexpr std::array<ModelRow, 22> kModels{
    {
        {"QM43000", "QM43000"}, {"QM2700", "QM2700"},   {"QM1000", "QM1000"},
        {"QM2500", "QM2500"},   {"QM5500", "QM5500"},   {"QM6500", "QM6500"},
        {"QM6000", "QM60000"},  // reported under the longer name, deliberately
        {"RV5000", "RV5000"},   {"QM5700", "QM5700"},   {"QM1700", "QM1700"},
        {"QM1600", "QM1600"},   {"QM8700", "QM8700"},   {"QM3200", "QM3200"},
        {"QM8600", "QM8600"},   {"RV3100", "RV3100"},   {"QM41000", "QM41000"},
        {"RV7000H", "RV7000H"}, {"RV6000H", "RV6000H"}, {"RV5200", "RV5200"},
        {"WX4500", "WX4500"},   {"WX4000", "WX4000"},   {"HK300", "HK300"},
    }};

constexpr std::size_t kProductNameLength = 16;

}  // namespace

std::string_view HostModelId(const ScannerSettings& settings) {
  const char* id = settings.modelId;
  constexpr std::size_t kLongest = sizeof(ScannerSettings::modelId);
  return {id, static_cast<std::size_t>(std::find(id, id + kLongest, '\0') - id)};
}

std::string_view ListedModelName(std::string_view modelId) {
  for (const ModelRow& row : kModels) {
    if (row.modelId == modelId) return row.reportedName;
  }
  return {};
}

void StoreModelName(ScannerSettings& settings, std::string_view name) {
  char* const to = settings.modelName;
  const std::size_t length = std::min(name.size(), sizeof(ScannerSettings::modelName) - 1);
  std::copy_n(name.begin(), length, to);
  to[length] = '\0';
}

std::string_view StoreProductName(ScannerSettings& settings, std::span<const std::uint8_t> name) {
  char* const to = settings.productNameReply;
  const std::size_t longest = std::min(name.size(), kProductNameLength);
  const auto end = std::find(name.begin(), name.begin() + static_cast<std::ptrdiff_t>(longest), 0);
  std::fill_n(to, kProductNameLength, ' ');
  to[0] = '\0';
  to[kProductNameLength] = '\0';
  std::copy(name.begin(), end, to);
  return {to, kProductNameLength};
}

}  // namespace pmddb832
