#include "pmscan/report_page/page_data.h"

#include <nlohmann/json.hpp>
#include <string>

#include "pmscan/report_page/thumbnail.h"
#include "wire/value_names.h"

namespace pmscan {
namespace {

using Json = nlohmann::ordered_json;

// "grey, 8 bits".
std::string FormOf(const PictureShape& shape) {
  if (shape.bits == 0) return {};
  std::string bits = std::to_string(shape.bits) + (shape.bits == 1 ? " bit" : " bits");
  for (const pmddb832::ValueName& name : pmddb832::names::kColorModes) {
    if (name.value == shape.colorMode) return std::string(name.name) + ", " + bits;
  }
  return bits;
}

Json PageJson(const CapturedPage& page, bool showsPictures) {
  const Thumbnail thumbnail = showsPictures ? Shrink(page) : Thumbnail{};
  Json json{{"width", page.shape.width},       {"height", page.shape.height},
            {"hostLines", page.hostLines},     {"dotsPerInch", page.shape.dotsPerInch},
            {"form", FormOf(page.shape)},      {"isWhole", page.IsWhole()},
            {"blocks", Json::array()},         {"bands", page.bands},
            {"image", DataAddress(thumbnail)}, {"imageLines", thumbnail.lines}};
  for (const CapturedBlock& block : page.blocks) {
    json["blocks"].push_back({block.lines, block.bytes, block.hasError});
  }
  return json;
}

}  // namespace

Json PagesJson(const std::vector<CapturedPage>& pages, bool showsPictures) {
  Json json = Json::array();
  for (const CapturedPage& page : pages) json.push_back(PageJson(page, showsPictures));
  return json;
}

}  // namespace pmscan
