#include <algorithm>
#include <array>
#include <string_view>

#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "standard/std_commands.h"
#include "standard/std_scan_cmd.h"
#include "transport/model_names.h"
#include "wire/commands.h"
#include "wire/product_reply.h"

namespace pmddb832 {
namespace {

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

// False with an empty name when nobody names the model. The host's own id comes first; the quirk
// stays as it is for a model that it names.
bool StoreModel(ScannerSettings& settings, std::string_view productName, std::uint16_t& quirk) {
  const std::string_view modelId = HostModelId(settings);
  if (const std::string_view listed = ListedModelName(modelId); !listed.empty()) {
    StoreModelName(settings, listed);
    return true;
  }
  for (const ProductRow& row : kProducts) {
    if (row.productName != productName) continue;
    StoreModelName(settings, row.modelName);
    quirk = row.quirk;
    return true;
  }
  StoreModelName(settings, modelId);
  return !modelId.empty();
}

bool GetScannerProductName(GeneralCmd& scanner, Call& call, ReplyBuffer& buffer,
                           std::uint16_t& quirk) {
  const TraceScope trace{"Scmdnt::GetScannerProductName"};
  const auto reply = Scmdnt::Inquire(scanner, call, esc::kProductName, buffer);
  if (!reply.has_value()) return false;
  constexpr std::size_t kOffset = product_reply::kNameOffset - sizeof(ReplyHeader);
  const std::size_t start = std::min(kOffset, reply->size());
  return StoreModel(call.settings, StoreProductName(call.settings, reply->subspan(start)), quirk);
}

}  // namespace

void StdScanCmd::IdentifyModel(Call& call) {
  if (!GetScannerProductName(*this, call, replyBuffer_, facts_.modelQuirk)) {
    StoreModelName(call.settings, kUnknownModelName);
  }
}

}  // namespace pmddb832
