#pragma once

#include <nlohmann/json_fwd.hpp>
#include <vector>

#include "pmscan/report_page/captured_pages.h"

namespace pmscan {

// The pages for the script of a report; ReportData tells the form.
nlohmann::ordered_json PagesJson(const std::vector<CapturedPage>& pages, bool showsPictures);

}  // namespace pmscan
