#include <algorithm>
#include <string_view>

#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "standard/std_scan_cmd.h"
#include "transport/model_names.h"

namespace pmddb832 {
namespace {

constexpr std::size_t kProductNameOffset = 8;  // in the data of the reply to ESC "?"

struct ProductRow {
  std::string_view productName;
  std::string_view modelName;
  std::uint16_t quirk;
};

constexpr std::array<ProductRow, 7> kProducts{{
    {"SCANNER RV-3000 ", "QM43000", 0},
    {"SCANNER QM-43000", "QM43000", 0},
    {"Prospectra936XL ", "QM43000", 0},
    {"SCANNER QM-2700 ", "QM2700", 1},
    {"Prospectra900   ", "QM2700", 1},
    {"SCANNER RV-5000 ", "RV5000", 3},
    {"Prospectra3100  ", "RV5000", 3},
}};

}  // namespace

void StdScanCmd::IdentifyModel() {
  if (GetScannerProductName() == 0) StoreModelName(kUnknownModelName);
}

// The host's own id comes first; the quirk stays as it is for a model that it names.
std::uint32_t StdScanCmd::GetScannerProductName() {
  const TraceScope trace{"Scmdnt::GetScannerProductName"};
  const auto reply = Inquire('?');
  if (!reply.has_value()) return 0;
  const std::size_t start = std::min(kProductNameOffset, reply->size());
  const std::string_view productName = StoreProductName(reply->subspan(start));
  const std::string_view modelId = HostModelId();
  if (const std::string_view listed = ListedModelName(modelId); !listed.empty()) {
    StoreModelName(listed);
    return 1;
  }
  for (const ProductRow& row : kProducts) {
    if (row.productName != productName) continue;
    StoreModelName(row.modelName);
    modelQuirk_ = row.quirk;
    return 1;
  }
  StoreModelName(modelId);
  return modelId.empty() ? 0 : 1;
}

}  // namespace pmddb832
