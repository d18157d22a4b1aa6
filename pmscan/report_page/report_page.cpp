#include "pmscan/report_page/report_page.h"

#include <nlohmann/json.hpp>
#include <string_view>

#include "pmscan/report_page/page_files.h"
#include "pmscan/report_page/report_data.h"

namespace pmscan {
namespace {

// Texts of the device stand in the data: none of them may end the element that holds it.
std::string ForScriptElement(const std::string& json) {
  std::string text;
  text.reserve(json.size());
  for (const char letter : json) {
    if (letter == '<') {
      text += "\\u003c";
    } else {
      text += letter;
    }
  }
  return text;
}

void Replace(std::string& text, std::string_view place, std::string_view with) {
  text.replace(text.find(place), place.size(), with);
}

}  // namespace

std::string ReportPage(const capture::Capture& capture, const std::string& fileName,
                       bool showsPictures) {
  using Json = nlohmann::ordered_json;
  const std::string data = ReportData(capture, fileName, showsPictures)
                               .dump(-1, ' ', true, Json::error_handler_t::replace);
  std::string page(page_files::kPage);
  Replace(page, "/* style */", page_files::kStyle);
  Replace(page, "/* script */", page_files::kScript);
  Replace(page, "/* data */", ForScriptElement(data));
  return page;
}

}  // namespace pmscan
